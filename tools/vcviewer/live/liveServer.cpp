#include "liveServer.h"

#include <httplib.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <map>
#include <mutex>
#include <thread>

namespace vcviewer {

struct LiveServer::Impl {
  Limits limits;
  std::map<std::string, WebFile> files;
  httplib::Server server;
  std::thread thread;
  int port = -1;

  std::mutex mutex;
  std::condition_variable changed;
  std::shared_ptr<const std::string> snapshot;  // guarded by mutex
  std::uint64_t version = 0;                    // guarded by mutex
  bool stopping = false;                        // guarded by mutex
  std::atomic<size_t> streams{0};
  std::atomic<bool> listenEnded{false};
  bool loopbackOnly = false;  // set before the server threads start

  void routes();
  void stream(httplib::Response& res);
};

namespace {

void refuse(httplib::Response& res, int status, const std::string& why) {
  res.status = status;
  res.set_content(why + "\n", "text/plain; charset=utf-8");
}

bool loopbackName(const std::string& host) {
  return host == "127.0.0.1" || host == "localhost" || host == "::1" || host == "[::1]";
}

// The host part of a Host header: "127.0.0.1:8080" -> "127.0.0.1", "[::1]:80" -> "[::1]".
std::string hostName(const std::string& header) {
  size_t colon = header.rfind(':');
  if (colon != std::string::npos && header.find(']', colon) == std::string::npos)
    return header.substr(0, colon);
  return header;
}

}  // namespace

void LiveServer::Impl::routes() {
  // Served on loopback, the page is for this machine only: a request that names another
  // host reached us through a name that was made to point here, and a page of some web
  // site could read the scene that way.
  server.set_pre_routing_handler([this](const httplib::Request& req, httplib::Response& res) {
    std::string named = hostName(req.get_header_value("Host"));
    if (!loopbackOnly || named.empty() || loopbackName(named))
      return httplib::Server::HandlerResponse::Unhandled;
    refuse(res, 403, "this page is served to this machine only (Host: 127.0.0.1 or localhost)");
    return httplib::Server::HandlerResponse::Handled;
  });

  // One handler looks every path up exactly: patterns would let "/page.js" match
  // "/pageXjs", and nothing outside the list may ever be served.
  server.Get(".*", [this](const httplib::Request& req, httplib::Response& res) {
    res.set_header("Cache-Control", "no-store");
    res.set_header("X-Content-Type-Options", "nosniff");
    if (req.path == "/events") return stream(res);
    if (req.path == "/scene") {
      std::shared_ptr<const std::string> latest;
      {
        std::lock_guard<std::mutex> lock(mutex);
        latest = snapshot;
      }
      if (!latest) return refuse(res, 503, "no scene yet");
      res.set_content(*latest, "application/json");
      return;
    }
    auto file = files.find(req.path);
    if (file == files.end()) return refuse(res, 404, "not found: " + req.path);
    res.set_content(file->second.body.data(), file->second.body.size(),
                    file->second.contentType.c_str());
  });
  auto notAllowed = [](const httplib::Request&, httplib::Response& res) {
    res.set_header("Allow", "GET, HEAD");
    refuse(res, 405, "only GET and HEAD are served here");
  };
  server.Post(".*", notAllowed);
  server.Put(".*", notAllowed);
  server.Patch(".*", notAllowed);
  server.Delete(".*", notAllowed);
  server.Options(".*", notAllowed);
}

void LiveServer::Impl::stream(httplib::Response& res) {
  // Each open page holds a server thread; a bounded number keeps threads free for the
  // page's files and for a page that reloads.
  if (streams.fetch_add(1) >= limits.maxStreams) {
    streams.fetch_sub(1);
    res.set_header("Retry-After", "5");
    return refuse(res, 503, "too many pages open");
  }
  auto sent = std::make_shared<std::uint64_t>(0);
  res.set_chunked_content_provider(
      "text/event-stream",
      [this, sent](size_t, httplib::DataSink& sink) {
        std::shared_ptr<const std::string> next;
        std::uint64_t id = 0;
        {
          std::unique_lock<std::mutex> lock(mutex);
          changed.wait_for(lock, std::chrono::milliseconds(limits.heartbeatMs),
                           [&] { return stopping || (snapshot && version != *sent); });
          if (stopping) return false;
          if (snapshot && version != *sent) {
            next = snapshot;
            id = *sent = version;
          }
        }
        // Nothing new: a comment line, so that a page that went away is noticed.
        if (!next) return sink.write(":\n\n", 3);
        std::string event = "event: scene\nid: " + std::to_string(id) + "\ndata: ";
        event.reserve(event.size() + next->size() + 2);
        event += *next;
        event += "\n\n";
        return sink.write(event.data(), event.size());
      },
      [this](bool) { streams.fetch_sub(1); });
}

LiveServer::LiveServer(std::vector<WebFile> files) : LiveServer(std::move(files), Limits()) {}

LiveServer::LiveServer(std::vector<WebFile> files, Limits limits) : impl_(new Impl) {
  impl_->limits = limits;
  for (WebFile& f : files) {
    std::string path = f.path;
    impl_->files.emplace(std::move(path), std::move(f));
  }
  // Streams, plus room for the files and for requests that are refused.
  size_t threads = limits.maxStreams + 6;
  impl_->server.new_task_queue = [threads] { return new httplib::ThreadPool(threads); };
  impl_->server.set_write_timeout(limits.writeTimeoutMs / 1000,
                                  (limits.writeTimeoutMs % 1000) * 1000);
  impl_->server.set_read_timeout(5, 0);
  impl_->server.set_keep_alive_timeout(2);
  impl_->server.set_payload_max_length(limits.maxRequestBody);
  // Address reuse only: the library's default also shares the port with any other server
  // that asks, and a second viewer on a taken port must fail, not split the pages.
  impl_->server.set_socket_options([](int sock) {
    int yes = 1;
    ::setsockopt(sock, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
  });
  impl_->routes();
}

LiveServer::~LiveServer() {
  stop();
}

bool LiveServer::start(const std::string& host, int port, std::string& error) {
  if (impl_->thread.joinable()) {
    error = "already serving";
    return false;
  }
  int bound = port == 0 ? impl_->server.bind_to_any_port(host)
                        : (impl_->server.bind_to_port(host, port) ? port : -1);
  if (bound < 0) {
    error = "cannot listen on " + host + ":" + std::to_string(port);
    return false;
  }
  impl_->port = bound;
  impl_->loopbackOnly = loopbackName(host);
  impl_->thread = std::thread([this] {
    impl_->server.listen_after_bind();
    impl_->listenEnded = true;
  });
  // The server only takes stop() once its loop runs; until then a stop would be lost.
  while (!impl_->server.is_running() && !impl_->listenEnded)
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  return true;
}

int LiveServer::port() const {
  return impl_->port;
}

void LiveServer::stop() {
  {
    std::lock_guard<std::mutex> lock(impl_->mutex);
    impl_->stopping = true;
  }
  impl_->changed.notify_all();
  if (impl_->thread.joinable()) {
    impl_->server.stop();
    impl_->thread.join();
  }
}

void LiveServer::publish(std::string snapshot) {
  auto next = std::make_shared<const std::string>(std::move(snapshot));
  {
    std::lock_guard<std::mutex> lock(impl_->mutex);
    impl_->snapshot = std::move(next);
    ++impl_->version;
  }
  impl_->changed.notify_all();
}

size_t LiveServer::streams() const {
  return impl_->streams.load();
}

bool parseListenAddress(const std::string& text, std::string& host, int& port) {
  std::string portText = text;
  host = "127.0.0.1";
  size_t colon = text.rfind(':');
  if (colon != std::string::npos) {
    host = text.substr(0, colon);
    portText = text.substr(colon + 1);
    if (host.size() >= 2 && host.front() == '[' && host.back() == ']')
      host = host.substr(1, host.size() - 2);
    if (host.empty()) return false;
  }
  if (portText.empty() || portText.size() > 5 ||
      portText.find_first_not_of("0123456789") != std::string::npos)
    return false;
  port = std::stoi(portText);
  return port <= 65535;
}

}  // namespace vcviewer
