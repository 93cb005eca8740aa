// The flexible box: a card laid out from a description, filled from data,
// measured for a width, painted, and refused whole when the description is bad.
#include <gtest/gtest.h>

#include <QApplication>
#include <QImage>
#include <QPainter>
#include <QTemporaryDir>
#include <QTest>
#include <string>

#include "support/test_util.h"
#include "uikit/widget/flex_box_widget.h"

namespace {

Variant Data(std::initializer_list<std::pair<char const*, Variant>> fields) {
  Variant data(base::variant::kVariantTypeMap);
  for (auto const& [key, value] : fields) data.Set(key, value);
  return data;
}

QString TextOf(FlexBoxWidget const& box, char const* name) {
  QWidget* part = box.findChild<QWidget*>(name);
  return part ? part->accessibleName() : QStringLiteral("<no part %1>").arg(name);
}

bool Shown(FlexBoxWidget const& box, char const* name) {
  QWidget* part = box.findChild<QWidget*>(name);
  return part && !part->isHidden();
}

// Lays the box out as a window would.
void ShowAt(FlexBoxWidget& box, int width, int height) {
  box.resize(width, height);
  box.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&box));
  QApplication::processEvents();
}

constexpr char kOffer[] = R"({"type": "box", "name": "card", "children": [
  {"type": "text", "name": "title", "text": "{{title}}"},
  {"type": "text", "name": "price", "text": "Now {{ price }}, was {{old}}", "visible": "discount"},
  {"type": "text", "name": "sold_out", "text": "Sold out", "visible": "!in_stock"},
  {"type": "image", "name": "picture", "source": "{{picture}}", "width": 40, "height": 30}
]})";

TEST(FlexBoxWidgetTest, PlaceholdersAndSwitchesFollowEachRecordGiven) {
  FlexBoxWidget box;
  ASSERT_TRUE(box.SetLayoutTemplate(QString(kOffer))) << box.error().toStdString();
  ASSERT_TRUE(box.HasLayout());
  box.SetData(Data({{"title", Variant("Mug")}, {"price", Variant(12)}, {"old", Variant("$18")},
                    {"discount", Variant(true)}, {"in_stock", Variant(1)}}));
  EXPECT_EQ(TextOf(box, "title"), "Mug");
  EXPECT_EQ(TextOf(box, "price"), "Now 12, was $18");
  EXPECT_TRUE(Shown(box, "price"));
  EXPECT_FALSE(Shown(box, "sold_out")) << "\"!in_stock\" hides while the goods are in stock";
  EXPECT_EQ(box.findChild<QWidget*>("picture")->size(), QSize(40, 30));

  // The next record rebinds the same widgets: nothing of the first remains.
  box.SetData(Data({{"title", Variant("Tea")}, {"old", Variant::Map{}}, {"discount", Variant("")}}));
  EXPECT_EQ(TextOf(box, "title"), "Tea");
  EXPECT_EQ(TextOf(box, "price"), "Now , was ") << "missing values and containers fill in as nothing";
  EXPECT_FALSE(Shown(box, "price")) << "an empty string is off";
  EXPECT_TRUE(Shown(box, "sold_out"));

  box.SetData(Data({{"discount", Variant(true)}}));
  EXPECT_FALSE(Shown(box, "title")) << "a text that comes out empty takes no room";
  box.SetData(Variant("not a map"));
  EXPECT_FALSE(Shown(box, "price"));
  EXPECT_TRUE(box.data().IsMap());
}

TEST(FlexBoxWidgetTest, HeightFollowsTheWidthAndTheLineLimit) {
  auto layout = [](int max_lines) {
    return QString(R"({"type": "box", "padding": [10, 8, 10, 8], "children": [
      {"type": "text", "name": "body", "text": "{{body}}", "font_size": 14, "max_lines": %1}]})")
        .arg(max_lines);
  };
  const Variant long_text = Data({{"body", Variant("a goods card whose name runs on over several lines of text")}});
  FlexBoxWidget limited;
  ASSERT_TRUE(limited.SetLayoutTemplate(layout(2)));
  limited.SetData(long_text);
  FlexBoxWidget unlimited;
  ASSERT_TRUE(unlimited.SetLayoutTemplate(layout(0)));
  unlimited.SetData(long_text);
  const int line = limited.findChild<QWidget*>("body")->fontMetrics().lineSpacing();

  EXPECT_EQ(limited.heightForWidth(2000), 16 + line) << "one line when there is room";
  EXPECT_EQ(limited.heightForWidth(100), 16 + 2 * line) << "cut at two lines";
  EXPECT_GT(unlimited.heightForWidth(100), 16 + 2 * line);
  EXPECT_EQ(unlimited.heightForWidth(100) % line, 16 % line) << "whole lines only";

  limited.setFixedWidth(100);
  EXPECT_EQ(limited.sizeHint(), QSize(100, 16 + 2 * line)) << "a fixed width asks for the height it needs";

  limited.SetData(Data({}));
  EXPECT_EQ(limited.sizeHint().height(), 16) << "an empty text leaves only the padding";
}

TEST(FlexBoxWidgetTest, RowsShareSpareRoomByGrowAndPlaceChildrenByJustify) {
  FlexBoxWidget grow;
  ASSERT_TRUE(grow.SetLayoutTemplate(QString(R"({"type": "box", "direction": "row", "children": [
    {"type": "spacer", "name": "one", "grow": 1, "height": 10},
    {"type": "spacer", "name": "three", "grow": 3, "height": 10}]})")));
  ShowAt(grow, 400, 10);
  EXPECT_EQ(grow.findChild<QWidget*>("one")->geometry(), QRect(0, 0, 100, 10));
  EXPECT_EQ(grow.findChild<QWidget*>("three")->geometry(), QRect(100, 0, 300, 10));

  FlexBoxWidget justify;
  ASSERT_TRUE(justify.SetLayoutTemplate(QString(R"({"type": "box", "direction": "column", "children": [
    {"type": "box", "direction": "row", "justify": "end", "children": [
      {"type": "image", "name": "end", "width": 20, "height": 20}]},
    {"type": "box", "direction": "row", "justify": "space-between", "padding": [5, 0, 5, 0], "children": [
      {"type": "image", "name": "left", "width": 20, "height": 20},
      {"type": "image", "name": "right", "width": 20, "height": 20}]},
    {"type": "box", "direction": "row", "justify": "center", "children": [
      {"type": "image", "name": "middle", "width": 20, "height": 20}]}]})")));
  ShowAt(justify, 200, 60);
  auto left_of = [&justify](char const* name) { return justify.findChild<QWidget*>(name)->x(); };
  EXPECT_EQ(left_of("end"), 180);
  EXPECT_EQ(left_of("left"), 5);
  EXPECT_EQ(left_of("right"), 175);
  EXPECT_EQ(left_of("middle"), 90);
}

TEST(FlexBoxWidgetTest, BoxesPaintTheirBackgroundAndPicturesAreCroppedToTheirBox) {
  QTemporaryDir dir;
  ASSERT_TRUE(dir.isValid());
  // A wide picture: red on the left half, blue on the right.
  QImage wide(200, 100, QImage::Format_RGB32);
  wide.fill(Qt::red);
  QPainter(&wide).fillRect(100, 0, 100, 100, Qt::blue);
  const QString path = dir.filePath("wide.png");
  ASSERT_TRUE(wide.save(path));

  FlexBoxWidget box;
  ASSERT_TRUE(box.SetLayoutTemplate(QString(R"({"type": "box", "direction": "row", "background": "#00FF00",
    "padding": 10, "spacing": 10, "children": [
      {"type": "image", "name": "picture", "source": "{{picture}}", "width": 50, "height": 50},
      {"type": "image", "name": "absent", "source": "{{none}}", "width": 20, "height": 20,
       "placeholder": "#FF00FF"}]})")));
  box.SetData(Data({{"picture", Variant(path.toStdString())}}));
  ShowAt(box, 200, 70);
  const QImage shot = box.grab().toImage();
  EXPECT_EQ(shot.pixelColor(3, 3), QColor("#00FF00"));
  // Cover: the middle square of the picture fills the box, half red, half blue.
  EXPECT_EQ(shot.pixelColor(12, 35), QColor(Qt::red));
  EXPECT_EQ(shot.pixelColor(57, 35), QColor(Qt::blue));
  EXPECT_EQ(shot.pixelColor(80, 35), QColor("#FF00FF")) << "no picture: the placeholder colour";

  // The same file through a "file://" source shows the same picture.
  box.SetData(Data({{"picture", Variant("file://" + path.toStdString())}}));
  QApplication::processEvents();
  EXPECT_EQ(box.grab().toImage().pixelColor(57, 35), QColor(Qt::blue));
}

QString Nested(int boxes) {
  QString json = QStringLiteral(R"({"type": "spacer"})");
  for (int i = 0; i < boxes; ++i) json = QStringLiteral(R"({"type": "box", "children": [%1]})").arg(json);
  return json;
}

QString Wide(int spacers) {
  QStringList children;
  for (int i = 0; i < spacers; ++i) children << QStringLiteral(R"({"type": "spacer"})");
  return QStringLiteral(R"({"type": "box", "children": [%1]})").arg(children.join(','));
}

TEST(FlexBoxWidgetTest, ABadDescriptionBuildsNothingAndSaysWhy) {
  struct Case {
    QString json;
    char const* why;
  };
  const Case cases[] = {
      {R"({"type": "box", "children": [)", "not valid JSON"},
      {R"([{"type": "box"}])", "not an object"},
      {R"({"type": "box", "children": [{"type": "circle"}]})", "unknown node type \"circle\""},
      {R"({"type": "box", "children": {"type": "text"}})", "\"children\" is not an array"},
      {R"({"type": "box", "children": [{"type": "text"}, 3]})", "a node is not an object"},
      {Nested(FlexBoxWidget::kMaxDepth + 1), "nesting deeper than"},
      {Wide(FlexBoxWidget::kMaxNodes), "more than"},
  };
  for (auto const& c : cases) {
    FlexBoxWidget box;
    ASSERT_TRUE(box.SetLayoutTemplate(QString(kOffer)));
    talvex_test::LogCapture log;
    EXPECT_FALSE(box.SetLayoutTemplate(c.json)) << c.why;
    EXPECT_TRUE(box.error().contains(c.why)) << box.error().toStdString();
    EXPECT_FALSE(box.HasLayout());
    EXPECT_TRUE(box.findChildren<QWidget*>().isEmpty()) << c.why << ": neither the old layout nor a part of the new";
    EXPECT_TRUE(log.Contains("flex box layout refused"));
    box.SetData(Data({{"title", Variant("x")}}));  // a box without layout takes data quietly
  }

  // The limits themselves are allowed.
  FlexBoxWidget box;
  EXPECT_TRUE(box.SetLayoutTemplate(Nested(FlexBoxWidget::kMaxDepth))) << box.error().toStdString();
  EXPECT_TRUE(box.SetLayoutTemplate(Wide(FlexBoxWidget::kMaxNodes - 1))) << box.error().toStdString();
  EXPECT_TRUE(box.error().isEmpty());
}

}  // namespace
