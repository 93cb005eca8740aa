// The widget gallery: the module's widgets on sample data, page by page.
//   talvex_gallery [--page NAME] [--headless] [--out DIR]
// Headless, it writes <out>/gallery-<page>.png for the page (all pages when
// none is named) and exits.
#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QHBoxLayout>
#include <QListWidget>
#include <QStackedWidget>
#include <QTimer>
#include <cstdio>

#include "base/log/log.h"
#include "gallery_page.h"

bool GalleryRegistry::Add(GalleryPage page) {
  const_cast<std::vector<GalleryPage>&>(Pages()).push_back(std::move(page));
  return true;
}

std::vector<GalleryPage> const& GalleryRegistry::Pages() {
  static std::vector<GalleryPage> pages;
  return pages;
}

int main(int argc, char** argv) {
  const bool no_display = !qEnvironmentVariableIsSet("DISPLAY") && !qEnvironmentVariableIsSet("WAYLAND_DISPLAY");
  if (no_display && !qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication app(argc, argv);
  QCommandLineParser parser;
  parser.addHelpOption();
  QCommandLineOption page_option("page", "The page to show.", "name");
  QCommandLineOption headless_option("headless", "Write screenshots and exit.");
  QCommandLineOption out_option("out", "Directory for screenshots.", "dir", "demo-output");
  parser.addOptions({page_option, headless_option, out_option});
  parser.process(app);
  const bool headless = no_display || parser.isSet(headless_option);
  base::log::LogOptions log_options;
  log_options.write_file = false;
  base::log::InitLogging(log_options);

  QWidget window;
  window.setWindowTitle("Chat widget gallery");
  auto* layout = new QHBoxLayout(&window);
  auto* list = new QListWidget(&window);
  list->setFixedWidth(180);
  auto* stack = new QStackedWidget(&window);
  layout->addWidget(list);
  layout->addWidget(stack, 1);
  int selected = 0;
  for (auto const& page : GalleryRegistry::Pages()) {
    list->addItem(page.title);
    stack->addWidget(page.make(stack));
    if (page.name == parser.value(page_option)) selected = stack->count() - 1;
  }
  QObject::connect(list, &QListWidget::currentRowChanged, stack, &QStackedWidget::setCurrentIndex);
  list->setCurrentRow(selected);
  window.resize(1100, 760);
  window.show();

  if (!headless) return app.exec();
  int rc = 0;
  const QString out_dir = QDir(parser.value(out_option)).absolutePath();
  QDir().mkpath(out_dir);
  QTimer::singleShot(200, [&] {
    auto const& pages = GalleryRegistry::Pages();
    for (size_t i = 0; i < pages.size(); ++i) {
      if (parser.isSet(page_option) && pages[i].name != parser.value(page_option)) continue;
      list->setCurrentRow(static_cast<int>(i));
      QApplication::processEvents();
      const QString path = QDir(out_dir).filePath("gallery-" + pages[i].name + ".png");
      if (!window.grab().save(path)) rc = 1;
      std::printf("%s\n", qPrintable(path));
    }
    app.quit();
  });
  app.exec();
  base::log::ShutdownLogging();
  return rc;
}
