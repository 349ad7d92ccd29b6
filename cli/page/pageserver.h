// The network side of the page: files and one message stream for each open page, to this machine only.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace cli::page {

using PageId = uint32_t;

struct PageMessage {
  std::string bytes;
  bool binary = false;
};

class PageServer {
 public:
  // Called on the network's thread, one call at a time.
  class Client {
   public:
    virtual ~Client() = default;
    virtual void pageOpened(PageId page) = 0;
    virtual void pageClosed(PageId page) = 0;
    // False: the page talks nonsense, its connection ends.
    virtual bool messageCame(PageId page, std::string_view text) = 0;
    // The next message for the page, asked for whenever its connection is free; false when there is none.
    virtual bool nextMessage(PageId page, PageMessage& message) = 0;
    // Ctrl-C at the terminal, each time.
    virtual void endAsked() = 0;
  };

  // Whether this build has one.
  static bool exists();
  // Port 0: any free one. Null with the reason when it cannot listen. The client outlives the server.
  static std::unique_ptr<PageServer> start(uint16_t port, Client& client, std::string& reason);
  virtual ~PageServer() = default;  // closes all connections and waits for the thread

  [[nodiscard]] virtual std::string address() const = 0;  // with the token
  // From any thread: there may be something to tell the pages.
  virtual void wake() = 0;
};

}  // namespace cli::page
