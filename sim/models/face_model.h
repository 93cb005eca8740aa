#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "sim/models/sim_model.h"

namespace sim {

// Model 570: the meeting's faces (emoji by index), each with a shortcut text
// such as "[Smile]" and an image file.
//   method 0 -> array of all faces {index, face_type, path}
//   method 1 (int index) -> the face, false when unknown or not loaded
//   method 2 (string shortcut) -> the face, false when unknown or not loaded
//   method 4 -> bool, the faces are loaded
//   method 7 (string text) -> the text split into text items (`item_type` 0)
//            and emoji items (`item_type` 1) at the shortcuts it knows
// Event 0 fires when the faces are loaded.
//
// The images are drawn from the color emoji font into the user's cache on
// first use (a plain drawn face when the font is missing).
class FaceModel : public SimModel {
 public:
  static constexpr int kId = 570;
  struct Face {
    int index;
    std::string shortcut;
    std::string emoji;  // the character(s) the image is drawn from
  };

  FaceModel();
  // Draws missing images, marks the faces loaded and fires event 0.
  void Load();
  // A client whose faces failed to load.
  void Unload() { loaded_ = false; }
  bool loaded() const { return loaded_; }
  std::vector<Face> const& faces() const { return faces_; }
  std::string ImagePath(int index) const;
  std::string const& image_dir() const { return image_dir_; }

 private:
  Variant FaceInfo(Face const& face) const;
  Face const* FindByIndex(int index) const;
  Face const* FindByShortcut(std::string_view shortcut) const;
  Variant SplitText(std::string const& text) const;
  void DrawImage(Face const& face, std::string const& path) const;

  std::vector<Face> faces_;
  // The emoji item of each face, as SplitText hands it out, made at Load.
  std::vector<Variant> emoji_items_;
  std::string image_dir_;
  bool loaded_ = false;
};

}  // namespace sim
