#pragma once

#include <QString>
#include <string>

// Loads the chat module the way a client does: dlopen from beside the
// executable, Activate, then the module service's activation and the load
// functions; and the reverse on Unload.
class ModuleHost {
 public:
  ~ModuleHost();
  // False (with the reason in error()) when the library or its entry points
  // are missing.
  bool Load(QString const& library_path);
  void Unload();
  bool loaded() const { return loaded_; }
  QString const& error() const { return error_; }

 private:
  void* handle_ = nullptr;
  void (*deactivate_)() = nullptr;
  bool loaded_ = false;
  QString error_;
};
