// The server over Boost.Beast: the only place that speaks to a network, and only to the loopback device.
#ifdef GC_HAVE_BEAST
#include <atomic>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/signal_set.hpp>
#include <boost/asio/steady_timer.hpp>
#include <boost/beast/core.hpp>
#include <boost/beast/http.hpp>
#include <boost/beast/websocket.hpp>
#include <chrono>
#include <map>
#include <optional>
#include <random>
#include <thread>

#include "cli/page/assets.h"
#include "cli/page/pageserver.h"

namespace cli::page {

namespace {

namespace asio = boost::asio;
namespace beast = boost::beast;
namespace http = beast::http;
namespace websocket = beast::websocket;
using tcp = asio::ip::tcp;
using namespace std::chrono_literals;

constexpr size_t kMostPages = 16;
constexpr size_t kMostConnections = 64;
constexpr uint32_t kMostHeader = 8 << 10;     // bytes of a request
constexpr size_t kMostMessage = 64 << 10;     // bytes from a page
constexpr double kMessagesPerSecond = 2000;   // from a page, on average
constexpr double kMostMessagesAtOnce = 4000;  // above it
constexpr auto kPatience = 10s;               // for a request
constexpr auto kFarewell = 2s;                // for opening and closing a stream
constexpr auto kTick = 50ms;

std::string makeToken() {
  std::random_device source;
  std::string token;
  for (int i = 0; i < 5; ++i) {
    uint32_t bits = source();
    for (int digit = 0; digit < 8; ++digit, bits >>= 4) token.push_back("0123456789abcdef"[bits & 15]);
  }
  return token;
}

// Takes the same time wherever the texts differ.
bool sameSecret(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  unsigned different = 0;
  for (size_t i = 0; i < a.size(); ++i) different |= static_cast<unsigned char>(a[i] ^ b[i]);
  return different == 0;
}

std::string_view tokenOf(std::string_view target) {
  constexpr std::string_view kName = "token=";
  const size_t query = target.find('?');
  if (query == std::string_view::npos) return {};
  for (std::string_view rest = target.substr(query + 1); !rest.empty();) {
    const std::string_view each = rest.substr(0, rest.find('&'));
    if (each.substr(0, kName.size()) == kName) return each.substr(kName.size());
    rest.remove_prefix(std::min(each.size() + 1, rest.size()));
  }
  return {};
}

// Messages above the rate empty it.
class Bucket {
 public:
  bool take() {
    const auto now = std::chrono::steady_clock::now();
    m_level =
        std::min(kMostMessagesAtOnce, m_level + std::chrono::duration<double>(now - m_at).count() * kMessagesPerSecond);
    m_at = now;
    return --m_level >= 0;
  }

 private:
  double m_level = kMostMessagesAtOnce;
  std::chrono::steady_clock::time_point m_at = std::chrono::steady_clock::now();
};

struct Shared {
  PageServer::Client& client;
  std::string token;
  uint16_t port = 0;
  std::map<PageId, class PageConnection*> pages = {};
  PageId lastPage = 0;
  size_t connections = 0;

  // Names by which this machine's own browser calls it; another name in Host is a foreign site's that leads here.
  [[nodiscard]] bool isOwnHost(std::string_view host) const {
    const std::string suffix = ":" + std::to_string(port);
    return host == "127.0.0.1" + suffix || host == "localhost" + suffix;
  }
  [[nodiscard]] bool isOwnOrigin(std::string_view origin) const {
    constexpr std::string_view kScheme = "http://";
    return origin.substr(0, kScheme.size()) == kScheme && isOwnHost(origin.substr(kScheme.size()));
  }
};

std::string_view textOf(beast::string_view text) { return {text.data(), text.size()}; }

// One open page. It lives until its last handler has run.
class PageConnection : public std::enable_shared_from_this<PageConnection> {
 public:
  PageConnection(Shared& shared, beast::tcp_stream stream) : m_shared(shared), m_socket(std::move(stream)) {
    ++m_shared.connections;
  }
  ~PageConnection() {
    leave();
    --m_shared.connections;
  }
  PageConnection(const PageConnection&) = delete;
  PageConnection& operator=(const PageConnection&) = delete;

  void accept(http::request<http::empty_body> request) {
    m_request = std::move(request);
    beast::get_lowest_layer(m_socket).expires_never();
    m_socket.set_option(websocket::stream_base::timeout{kFarewell, 60s, true});
    m_socket.read_message_max(kMostMessage);
    m_socket.auto_fragment(false);
    m_socket.write_buffer_bytes(64 << 10);
    m_socket.async_accept(m_request, [self = shared_from_this()](beast::error_code error) {
      if (error) return;
      self->m_page = ++self->m_shared.lastPage;
      self->m_shared.pages[self->m_page] = self.get();
      self->m_shared.client.pageOpened(self->m_page);
      self->read();
      self->write();
    });
  }

  // Sends what there is, unless something is on its way.
  void write() {
    if (m_writing || m_closing || m_page == 0) return;
    if (!m_shared.client.nextMessage(m_page, m_message)) return;
    m_writing = true;
    m_socket.binary(m_message.binary);
    m_socket.async_write(asio::buffer(m_message.bytes), [self = shared_from_this()](beast::error_code error, size_t) {
      self->m_writing = false;
      if (error)
        self->leave();
      else
        self->write();
    });
  }

  void close(websocket::close_code code) {
    if (m_closing) return;
    leave();
    m_socket.async_close(code, [self = shared_from_this()](beast::error_code) {});
  }

  void cut() {
    m_closing = true;
    beast::get_lowest_layer(m_socket).close();
  }

 private:
  void read() {
    m_socket.async_read(m_buffer, [self = shared_from_this()](beast::error_code error, size_t) {
      if (error) return self->leave();
      if (!self->m_bucket.take()) return self->close(websocket::close_code::policy_error);
      const auto data = self->m_buffer.cdata();
      const std::string_view text(static_cast<const char*>(data.data()), data.size());
      const bool good = self->m_socket.got_text() && self->m_shared.client.messageCame(self->m_page, text);
      self->m_buffer.consume(self->m_buffer.size());
      if (!good) return self->close(websocket::close_code::bad_payload);
      self->write();
      self->read();
    });
  }
  void leave() {
    if (m_shared.pages.erase(m_page) > 0) m_shared.client.pageClosed(m_page);
    m_closing = true;
  }

  Shared& m_shared;
  websocket::stream<beast::tcp_stream> m_socket;
  http::request<http::empty_body> m_request;
  beast::flat_buffer m_buffer;
  PageMessage m_message;
  Bucket m_bucket;
  PageId m_page = 0;
  bool m_writing = false, m_closing = false;
};

// One request for a file, or for a page's stream.
class FileConnection : public std::enable_shared_from_this<FileConnection> {
 public:
  FileConnection(Shared& shared, tcp::socket socket) : m_shared(shared), m_stream(std::move(socket)) {
    ++m_shared.connections;
  }
  ~FileConnection() { --m_shared.connections; }
  FileConnection(const FileConnection&) = delete;
  FileConnection& operator=(const FileConnection&) = delete;

  void read() {
    m_parser.emplace();
    m_parser->header_limit(kMostHeader);
    m_parser->body_limit(uint64_t{0});
    m_stream.expires_after(kPatience);
    http::async_read(m_stream, m_buffer, *m_parser, [self = shared_from_this()](beast::error_code error, size_t) {
      if (!error) self->answer();
    });
  }

 private:
  void answer() {
    const auto& request = m_parser->get();
    const std::string_view target = textOf(request.target());
    const std::string_view path = target.substr(0, target.find('?'));
    if (!m_shared.isOwnHost(textOf(request[http::field::host])))
      return refuse(http::status::forbidden, "Wrong host.\n");
    const bool known = sameSecret(tokenOf(target), m_shared.token);
    if (websocket::is_upgrade(request)) return upgrade(path, known);
    if (request.method() != http::verb::get && request.method() != http::verb::head)
      return refuse(http::status::method_not_allowed, "Only GET.\n");
    if ((path == "/" || path == "/index.html") && !known)
      return refuse(http::status::forbidden, "This is not the address that gcad told: its token is missing or old.\n");
    const Asset* asset = findAsset(path == "/" ? "index.html" : path.substr(1));
    if (asset == nullptr) return refuse(http::status::not_found, "There is no such file.\n");
    send(http::status::ok, asset->type, asset->content);
  }

  void upgrade(std::string_view path, bool known) {
    const auto& request = m_parser->get();
    if (path != "/stream" || !known || !m_shared.isOwnOrigin(textOf(request[http::field::origin])))
      return refuse(http::status::forbidden, "Wrong token or origin.\n");
    if (m_shared.pages.size() >= kMostPages) return refuse(http::status::service_unavailable, "Too many pages.\n");
    std::make_shared<PageConnection>(m_shared, std::move(m_stream))->accept(m_parser->release());
  }

  void refuse(http::status status, std::string_view text) { send(status, "text/plain; charset=utf-8", text); }

  void send(http::status status, std::string_view type, std::string_view content) {
    const auto& request = m_parser->get();
    m_response.emplace(status, request.version());
    m_response->set(http::field::content_type, beast::string_view(type.data(), type.size()));
    m_response->set(http::field::cache_control, "no-store");
    m_response->set("X-Content-Type-Options", "nosniff");
    m_response->set("X-Frame-Options", "DENY");
    m_response->set("Referrer-Policy", "no-referrer");
    m_response->set("Cross-Origin-Resource-Policy", "same-origin");
    m_response->set(
        "Content-Security-Policy",
        "default-src 'none'; script-src 'self'; style-src 'self'; img-src 'self' data:; connect-src 'self'; "
        "base-uri 'none'; form-action 'none'; frame-ancestors 'none'");
    m_response->content_length(content.size());
    if (request.method() != http::verb::head) m_response->body().assign(content);
    m_response->keep_alive(request.keep_alive() && status == http::status::ok);
    http::async_write(m_stream, *m_response, [self = shared_from_this()](beast::error_code error, size_t) {
      if (error) return;
      if (self->m_response->keep_alive()) return self->read();
      beast::error_code ignored;
      self->m_stream.socket().shutdown(tcp::socket::shutdown_send, ignored);
    });
  }

  Shared& m_shared;
  beast::tcp_stream m_stream;
  beast::flat_buffer m_buffer;
  std::optional<http::request_parser<http::empty_body>> m_parser;
  std::optional<http::response<http::string_body>> m_response;
};

class BeastServer final : public PageServer {
 public:
  explicit BeastServer(Client& client) : m_shared{client, makeToken()} {}

  ~BeastServer() override {
    asio::post(m_context, [this] { end(); });
    if (m_thread.joinable()) m_thread.join();
  }

  bool listen(uint16_t port, std::string& reason) {
    beast::error_code error;
    const tcp::endpoint loopback(asio::ip::address_v4::loopback(), port);
    m_acceptor.open(loopback.protocol(), error);
#ifndef _WIN32
    // There it would let another program listen on the same port.
    if (!error) m_acceptor.set_option(asio::socket_base::reuse_address(true), error);
#endif
    if (!error) m_acceptor.bind(loopback, error);
    if (!error) m_acceptor.listen(asio::socket_base::max_listen_connections, error);
    if (!error) m_shared.port = m_acceptor.local_endpoint(error).port();
    if (error) {
      reason = "cannot listen on port " + std::to_string(port) + " of this machine: " + error.message();
      return false;
    }
    accept();
    tick();
    waitForSignal();
    m_thread = std::thread([this] { m_context.run(); });
    return true;
  }

  [[nodiscard]] std::string address() const override {
    return "http://127.0.0.1:" + std::to_string(m_shared.port) + "/?token=" + m_shared.token;
  }

  void wake() override {
    if (m_woken.exchange(true)) return;
    asio::post(m_context, [this] {
      m_woken = false;
      writeAll();
    });
  }

 private:
  void accept() {
    m_acceptor.async_accept([this](beast::error_code error, tcp::socket socket) {
      if (error == asio::error::operation_aborted) return;
      if (!error && m_shared.connections < kMostConnections) {
        beast::error_code ignored;
        socket.set_option(tcp::no_delay(true), ignored);
        std::make_shared<FileConnection>(m_shared, std::move(socket))->read();
      }
      accept();
    });
  }
  void writeAll() {
    const std::map<PageId, PageConnection*> pages = m_shared.pages;
    for (const auto& [id, page] : pages) page->write();
  }
  void waitForSignal() {
    m_signals.async_wait([this](beast::error_code failed, int) {
      if (failed) return;
      m_shared.client.endAsked();
      waitForSignal();
    });
  }
  // What was changed without waking anybody goes out soon too.
  void tick() {
    m_timer.expires_after(kTick);
    m_timer.async_wait([this](beast::error_code error) {
      if (error) return;
      writeAll();
      tick();
    });
  }
  void end() {
    beast::error_code ignored;
    m_acceptor.close(ignored);
    m_timer.cancel();
    m_signals.cancel(ignored);
    for (const auto& [id, page] : m_shared.pages) page->cut();
    // What is on its way (a last message, a close) gets a moment.
    m_ending.expires_after(50ms);
    m_ending.async_wait([this](beast::error_code) { m_context.stop(); });
  }

  // The connections, whose handlers the context holds, refer to what is shared: it goes after them.
  Shared m_shared;
  asio::io_context m_context{1};
  tcp::acceptor m_acceptor{m_context};
  asio::steady_timer m_timer{m_context}, m_ending{m_context};
  asio::signal_set m_signals{m_context, SIGINT, SIGTERM};
  std::atomic<bool> m_woken{false};
  std::thread m_thread;
};

}  // namespace

bool PageServer::exists() { return true; }

std::unique_ptr<PageServer> PageServer::start(uint16_t port, Client& client, std::string& reason) {
  auto server = std::make_unique<BeastServer>(client);
  if (!server->listen(port, reason)) return nullptr;
  return server;
}

}  // namespace cli::page
#endif
