#pragma once

// The chat module as the client runs it, in this process: registered,
// activated and with its UI loaded, so that extension hosts can build its
// views. Going out of scope unloads it and takes back what the client
// registered for it, so the next one starts clean.
class InProcessChatModule {
 public:
  InProcessChatModule();
  ~InProcessChatModule();
  InProcessChatModule(InProcessChatModule const&) = delete;
  InProcessChatModule& operator=(InProcessChatModule const&) = delete;

  bool activated() const { return activated_; }

 private:
  bool activated_ = false;
};
