#pragma once

#include <QString>
#include <functional>
#include <vector>

class QWidget;

// A page of the widget gallery: the chat widgets laid out on sample data,
// to be looked at (or screenshot) outside a meeting.
struct GalleryPage {
  QString name;
  QString title;
  std::function<QWidget*(QWidget* parent)> make;
};

class GalleryRegistry {
 public:
  static bool Add(GalleryPage page);
  static std::vector<GalleryPage> const& Pages();
};

// Registers a page from its own source file:
//   GALLERY_PAGE(richtext, "Rich text", [](QWidget* parent) { return new ...; });
#define GALLERY_PAGE(name, title, ...) \
  static const bool gallery_page_##name = GalleryRegistry::Add(GalleryPage{#name, title, __VA_ARGS__})
