#include "liveServer.h"

#include <arpa/inet.h>
#include <httplib.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <cstring>
#include <map>
#include <mutex>
#include <thread>

#include "allowedHosts.h"
#include "requestGate.h"

namespace vcviewer {

namespace {

// The library's server with its accepted connections handed to the gate instead of its
// own workers, and a way to serve a request the gate has read.
class GatedServer : public httplib::Server {
 public:
  std::function<void(int)> adopt;

  // The library listens with a backlog of 5: a burst of connections beyond that waits a
  // second or more for the client to try again, which a loading page must not.
  void deepenBacklog() { ::listen(svr_sock_, SOMAXCONN); }

  void serve(httplib::Stream& stream) {
    bool closed = false;
    process_request(stream, true, closed, [](httplib::Request&) {});
  }

 private:
  bool process_and_close_socket(socket_t sock) override {
    adopt(sock);
    return true;
  }
};

// The accept loop hands each connection over at once: the gate never waits for one.
struct HandOver : httplib::TaskQueue {
  void enqueue(std::function<void()> fn) override { fn(); }
  void shutdown() override {}
};

std::string addressOf(const sockaddr_storage& a, int& port) {
  char text[INET6_ADDRSTRLEN] = {};
  if (a.ss_family == AF_INET) {
    const auto& v4 = reinterpret_cast<const sockaddr_in&>(a);
    ::inet_ntop(AF_INET, &v4.sin_addr, text, sizeof text);
    port = ntohs(v4.sin_port);
  } else if (a.ss_family == AF_INET6) {
    const auto& v6 = reinterpret_cast<const sockaddr_in6&>(a);
    ::inet_ntop(AF_INET6, &v6.sin6_addr, text, sizeof text);
    port = ntohs(v6.sin6_port);
  }
  return text;
}

// A request the gate read whole, then the socket for the answer. Reading past the request
// is the end of input: a worker never waits for a client to send.
class RequestStream : public httplib::Stream {
 public:
  RequestStream(int fd, std::string request, int writeTimeoutMs)
      : fd_(fd), request_(std::move(request)), writeTimeoutMs_(writeTimeoutMs) {}

  bool is_readable() const override { return read_ < request_.size(); }
  bool is_writable() const override {
    pollfd p{fd_, POLLOUT, 0};
    if (::poll(&p, 1, writeTimeoutMs_) <= 0 || (p.revents & (POLLERR | POLLHUP))) return false;
    char c;
    const ssize_t n = ::recv(fd_, &c, 1, MSG_PEEK | MSG_DONTWAIT);
    return n > 0 || (n < 0 && (errno == EAGAIN || errno == EWOULDBLOCK));
  }
  ssize_t read(char* ptr, size_t size) override {
    size = std::min(size, request_.size() - read_);
    std::memcpy(ptr, request_.data() + read_, size);
    read_ += size;
    return static_cast<ssize_t>(size);
  }
  ssize_t write(const char* ptr, size_t size) override {
    pollfd p{fd_, POLLOUT, 0};
    if (::poll(&p, 1, writeTimeoutMs_) <= 0) return -1;
    return ::send(fd_, ptr, size, MSG_NOSIGNAL);
  }
  void get_remote_ip_and_port(std::string& ip, int& port) const override {
    sockaddr_storage a{};
    socklen_t n = sizeof a;
    if (::getpeername(fd_, reinterpret_cast<sockaddr*>(&a), &n) == 0) ip = addressOf(a, port);
  }
  void get_local_ip_and_port(std::string& ip, int& port) const override {
    sockaddr_storage a{};
    socklen_t n = sizeof a;
    if (::getsockname(fd_, reinterpret_cast<sockaddr*>(&a), &n) == 0) ip = addressOf(a, port);
  }
  socket_t socket() const override { return fd_; }

 private:
  int fd_;
  std::string request_;
  size_t read_ = 0;
  int writeTimeoutMs_;
};

Refusal busy(std::string text, std::string extraHeaders = "") {
  Refusal r;
  r.status = 503;
  r.reason = "Service Unavailable";
  r.text = std::move(text);
  r.extraHeaders = std::move(extraHeaders);
  return r;
}

}  // namespace

struct LiveServer::Impl {
  Limits limits;
  std::map<std::string, WebFile> files;
  GatedServer server;
  std::thread thread;
  int port = -1;

  std::mutex mutex;
  std::condition_variable changed;
  std::shared_ptr<const std::string> snapshot;  // guarded by mutex
  std::uint64_t version = 0;                    // guarded by mutex
  bool stopping = false;                        // guarded by mutex
  std::atomic<size_t> streams{0};
  std::atomic<bool> listenEnded{false};
  std::vector<std::string> extraHosts;
  std::unique_ptr<AllowedHosts> hosts;  // set before the server threads start

  // Requests go from the gate to one of two pools: the event streams, each of which
  // holds its worker while the page is open, and everything else.
  std::unique_ptr<RequestGate> gate;
  std::unique_ptr<httplib::ThreadPool> streamWorkers, pageWorkers;
  std::atomic<size_t> streamJobs{0}, pageJobs{0};

  void routes();
  void stream(httplib::Response& res);
  Refusal dispatch(int fd, std::string request, const std::string& target);
  void serve(int fd, const std::string& request);
};

namespace {

void refuse(httplib::Response& res, int status, const std::string& why) {
  res.status = status;
  res.set_content(why + "\n", "text/plain; charset=utf-8");
}

}  // namespace

Refusal LiveServer::Impl::dispatch(int fd, std::string request, const std::string& target) {
  const bool isStream = target.substr(0, target.find('?')) == "/events";
  if (isStream && streams.load() >= limits.maxStreams)
    return busy("too many pages open", "Retry-After: 5\r\n");
  std::atomic<size_t>& jobs = isStream ? streamJobs : pageJobs;
  const size_t most = isStream ? limits.maxStreams + 2 : limits.pageWorkers + limits.maxQueued;
  if (jobs.fetch_add(1) >= most) {
    jobs.fetch_sub(1);
    return busy(
        std::to_string(most) + " requests are being served or waiting, the most there may be",
        "Retry-After: 1\r\n");
  }
  (isStream ? streamWorkers : pageWorkers)
      ->enqueue([this, fd, request = std::move(request), &jobs] {
        serve(fd, request);
        jobs.fetch_sub(1);
      });
  return Refusal();
}

void LiveServer::Impl::serve(int fd, const std::string& request) {
  RequestStream stream(fd, request, limits.writeTimeoutMs);
  server.serve(stream);
  ::shutdown(fd, SHUT_WR);
  ::close(fd);
}

void LiveServer::Impl::routes() {
  // Only names this viewer is known by are served: a request that names another host
  // reached us through a name that was made to point here, and a page of some web site
  // could read the scene that way.
  server.set_pre_routing_handler([this](const httplib::Request& req, httplib::Response& res) {
    if (hosts->allows(req.get_header_value("Host")))
      return httplib::Server::HandlerResponse::Unhandled;
    refuse(res, 403,
           "this page is served under this viewer's own names and addresses only "
           "(vcviewer --http-allow-host adds others)");
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
  impl_->server.new_task_queue = [] { return new HandOver; };
  impl_->server.adopt = [this](int fd) { impl_->gate->adopt(fd); };
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
  impl_->server.deepenBacklog();
  impl_->hosts = std::make_unique<AllowedHosts>(host, impl_->extraHosts);
  const Limits& l = impl_->limits;
  // Streams, plus two that only refuse; the page's files have workers of their own.
  impl_->streamWorkers = std::make_unique<httplib::ThreadPool>(l.maxStreams + 2);
  impl_->pageWorkers = std::make_unique<httplib::ThreadPool>(std::max<size_t>(l.pageWorkers, 1));
  GateLimits gate;
  gate.deadline = l.requestDeadline;
  gate.maxHeaders = l.maxHeaders;
  gate.maxHeadBytes = l.maxHeadBytes;
  gate.maxBody = l.maxRequestBody;
  gate.maxWaiting = l.maxWaiting;
  impl_->gate = std::make_unique<RequestGate>(
      gate, [this](int fd, std::string request, const std::string& target) {
        return impl_->dispatch(fd, std::move(request), target);
      });
  impl_->thread = std::thread([this] {
    impl_->server.listen_after_bind();
    impl_->listenEnded = true;
  });
  // The server only takes stop() once its loop runs; until then a stop would be lost.
  while (!impl_->server.is_running() && !impl_->listenEnded)
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  return true;
}

void LiveServer::allowHosts(std::vector<std::string> names) {
  impl_->extraHosts = std::move(names);
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
  // No new connections now; the waiting ones are closed, then the workers finish what
  // they took (streams end at once, being told to stop).
  if (impl_->gate) impl_->gate->stop();
  for (auto* pool : {&impl_->streamWorkers, &impl_->pageWorkers})
    if (*pool) {
      (*pool)->shutdown();
      pool->reset();
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
