#include "process.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <sstream>
#include <stdexcept>

#include <arpa/inet.h>
#include <dirent.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

namespace vctest {

namespace {

void closeFd(int& fd) {
  if (fd >= 0) ::close(fd);
  fd = -1;
}

}  // namespace

ChildProcess::ChildProcess(const std::string& path, const std::vector<std::string>& args,
                           bool mergeStderr) {
  int in[2], out[2];
  if (::pipe2(in, O_CLOEXEC) != 0)
    throw std::runtime_error("pipe: " + std::string(std::strerror(errno)));
  if (::pipe2(out, O_CLOEXEC) != 0) {
    ::close(in[0]);
    ::close(in[1]);
    throw std::runtime_error("pipe: " + std::string(std::strerror(errno)));
  }
  std::vector<std::string> argvStore;
  argvStore.push_back(path);
  argvStore.insert(argvStore.end(), args.begin(), args.end());
  std::vector<char*> argv;
  for (auto& a : argvStore) argv.push_back(a.data());
  argv.push_back(nullptr);

  pid_ = ::fork();
  if (pid_ < 0) throw std::runtime_error("fork: " + std::string(std::strerror(errno)));
  if (pid_ == 0) {
    // Only async-signal-safe calls between fork and exec. A group of its own, so that
    // stopping the child stops what it started too (a script's servers), which would
    // otherwise keep its output open and the test waiting for the end of it.
    ::setpgid(0, 0);
    ::dup2(in[0], 0);
    ::dup2(out[1], 1);
    if (mergeStderr) ::dup2(out[1], 2);
    ::execv(path.c_str(), argv.data());
    const char msg[] = "exec failed\n";
    (void)!::write(2, msg, sizeof msg - 1);
    ::_exit(127);
  }
  // Set from both sides, so that no signal sent from here can miss the group.
  ::setpgid(pid_, pid_);
  ::close(in[0]);
  ::close(out[1]);
  stdinFd_ = in[1];
  stdoutFd_ = out[0];
  reader_ = std::thread([this] { collect(); });
}

ChildProcess::~ChildProcess() {
  bool open;
  {
    std::lock_guard<std::mutex> lock(mu_);
    open = !eof_;
  }
  // The child's group, while it may still have members: whatever the child started and
  // left running goes too, and with it the last holder of the child's output.
  if (pid_ > 0 && (!reaped_ || open)) ::kill(-pid_, SIGKILL);
  if (pid_ > 0 && !reaped_) wait(std::chrono::seconds(10));
  closeFd(stdinFd_);
  if (reader_.joinable()) reader_.join();
  closeFd(stdoutFd_);
}

void ChildProcess::collect() {
  std::string partial;
  char buf[4096];
  for (;;) {
    ssize_t n = ::read(stdoutFd_, buf, sizeof buf);
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) break;
    std::lock_guard<std::mutex> lock(mu_);
    for (ssize_t i = 0; i < n; ++i) {
      if (buf[i] == '\n') {
        lines_.push_back(partial);
        transcript_ += partial + "\n";
        partial.clear();
      } else {
        partial += buf[i];
      }
    }
    cv_.notify_all();
  }
  std::lock_guard<std::mutex> lock(mu_);
  if (!partial.empty()) {
    lines_.push_back(partial);
    transcript_ += partial + "\n";
  }
  eof_ = true;
  cv_.notify_all();
}

bool ChildProcess::readLine(std::string& line, std::chrono::milliseconds timeout) {
  std::unique_lock<std::mutex> lock(mu_);
  if (!cv_.wait_for(lock, timeout, [&] { return !lines_.empty() || eof_; })) return false;
  if (lines_.empty()) return false;
  line = std::move(lines_.front());
  lines_.pop_front();
  return true;
}

bool ChildProcess::waitForLine(const std::string& text, std::string& line,
                               std::chrono::milliseconds timeout) {
  const auto deadline = std::chrono::steady_clock::now() + timeout;
  for (;;) {
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
        deadline - std::chrono::steady_clock::now());
    if (left.count() < 0 || !readLine(line, left)) return false;
    if (line.find(text) != std::string::npos) return true;
  }
}

std::string ChildProcess::transcript() const {
  std::lock_guard<std::mutex> lock(mu_);
  return transcript_;
}

bool ChildProcess::writeLine(const std::string& line) {
  if (stdinFd_ < 0) return false;
  const std::string data = line + "\n";
  std::size_t done = 0;
  while (done < data.size()) {
    // MSG_NOSIGNAL does not apply to pipes; a closed reader must not kill the test.
    struct sigaction ignore {
    }, old{};
    ignore.sa_handler = SIG_IGN;
    ::sigaction(SIGPIPE, &ignore, &old);
    ssize_t n = ::write(stdinFd_, data.data() + done, data.size() - done);
    ::sigaction(SIGPIPE, &old, nullptr);
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) return false;
    done += static_cast<std::size_t>(n);
  }
  return true;
}

void ChildProcess::closeStdin() {
  closeFd(stdinFd_);
}

void ChildProcess::kill(int signal) {
  if (!reaped_ && pid_ > 0) ::kill(pid_, signal);
}

int ChildProcess::wait(std::chrono::milliseconds timeout) {
  if (reaped_) return status_;
  const auto deadline = std::chrono::steady_clock::now() + timeout;
  for (;;) {
    int st = 0;
    pid_t r = ::waitpid(pid_, &st, WNOHANG);
    if (r == pid_) {
      reaped_ = true;
      status_ = WIFEXITED(st) ? WEXITSTATUS(st) : WIFSIGNALED(st) ? 128 + WTERMSIG(st) : -1;
      // The child is gone, but the reader may not have taken its last lines yet: a test
      // that reads the transcript right after wait() must find all of it. A grandchild
      // holding the pipe open keeps it from ending, hence the bound.
      std::unique_lock<std::mutex> lock(mu_);
      cv_.wait_for(lock, std::chrono::seconds(5), [this] { return eof_; });
      return status_;
    }
    if (r < 0 && errno != EINTR) return -1;
    if (std::chrono::steady_clock::now() >= deadline) return -1;
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
}

bool ChildProcess::running() {
  return wait(std::chrono::milliseconds(0)) == -1 && !reaped_;
}

std::string binaryPath(const std::string& name) {
  return programPath(name + VC_TOOL_SUFFIX);
}

std::string programPath(const std::string& name) {
  return std::string(VC_BINARY_DIR) + "/bin/" + name;
}

bool hubAvailable() {
  return ::access(programPath("rtihub").c_str(), X_OK) == 0;
}

std::unique_ptr<ChildProcess> startHub(std::uint16_t& port,
                                       const std::vector<std::string>& extraArgs,
                                       int maxOpenFiles) {
  std::vector<std::string> args{"--listen", "127.0.0.1:0"};
  args.insert(args.end(), extraArgs.begin(), extraArgs.end());
  std::unique_ptr<ChildProcess> hub;
  if (maxOpenFiles > 0) {
    args.insert(args.begin(),
                {"-c", "ulimit -n " + std::to_string(maxOpenFiles) + " && exec \"$0\" \"$@\"",
                 programPath("rtihub")});
    hub = std::make_unique<ChildProcess>("/bin/sh", args, true);
  } else {
    hub = std::make_unique<ChildProcess>(programPath("rtihub"), args, true);
  }
  std::string line;
  const std::string marker = "rtihub listening on 127.0.0.1:";
  if (!hub->waitForLine(marker, line, std::chrono::seconds(10)))
    throw std::runtime_error("rtihub did not start:\n" + hub->transcript());
  port = static_cast<std::uint16_t>(std::stoul(line.substr(line.find(marker) + marker.size())));
  return hub;
}

bool readUntil(int fd, std::string& into, const std::string& text,
               std::chrono::milliseconds timeout) {
  const auto deadline = std::chrono::steady_clock::now() + timeout;
  char buf[65536];
  while (std::chrono::steady_clock::now() < deadline) {
    if (!text.empty() && into.find(text) != std::string::npos) return true;
    pollfd p{fd, POLLIN, 0};
    if (::poll(&p, 1, 20) <= 0) continue;
    const ssize_t n = ::read(fd, buf, sizeof buf);
    if (n == 0) return text.empty();
    if (n > 0) into.append(buf, static_cast<std::size_t>(n));
  }
  return false;
}

std::string hubUrl(std::uint16_t port, const std::string& federation) {
  return "rti://127.0.0.1:" + std::to_string(port) + "/" + federation;
}

long residentKiB(pid_t pid) {
  std::ifstream status("/proc/" + std::to_string(pid) + "/status");
  std::string key;
  long value = -1;
  while (status >> key) {
    if (key == "VmRSS:") {
      status >> value;
      break;
    }
    status.ignore(1 << 16, '\n');
  }
  return value;
}

double cpuSeconds(pid_t pid) {
  std::ifstream in("/proc/" + std::to_string(pid) + "/stat");
  std::string line;
  if (!std::getline(in, line)) return -1;
  // The command name in parentheses may hold blanks; the fields count from after it.
  const auto close = line.rfind(')');
  if (close == std::string::npos) return -1;
  std::istringstream fields(line.substr(close + 2));
  std::string field;
  unsigned long long utime = 0, stime = 0;
  for (int i = 3; i <= 15 && fields >> field; ++i) {
    if (i == 14) utime = std::stoull(field);
    if (i == 15) stime = std::stoull(field);
  }
  return static_cast<double>(utime + stime) / static_cast<double>(::sysconf(_SC_CLK_TCK));
}

}  // namespace vctest

namespace vctest {

bool embeddedRti() {
  return VC_EMBEDDED_RTI != 0;
}

bool serverAvailable() {
  if (embeddedRti()) return hubAvailable();
  const std::string node = VC_RTINODE;
  return !node.empty() && ::access(node.c_str(), X_OK) == 0;
}

namespace {

sockaddr_in loopback(std::uint16_t port) {
  sockaddr_in a{};
  a.sin_family = AF_INET;
  a.sin_port = htons(port);
  a.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  return a;
}

// The TCP port a process listens on, read from /proc: 0 while it has none yet.
std::uint16_t listeningPort(pid_t pid) {
  const std::string proc = "/proc/" + std::to_string(pid);
  std::vector<std::string> sockets;
  if (DIR* dir = ::opendir((proc + "/fd").c_str())) {
    while (const dirent* e = ::readdir(dir)) {
      char target[64];
      const ssize_t n = ::readlink((proc + "/fd/" + e->d_name).c_str(), target, sizeof target - 1);
      if (n <= 0) continue;
      target[n] = 0;
      unsigned long inode = 0;
      if (std::sscanf(target, "socket:[%lu]", &inode) == 1)
        sockets.push_back(std::to_string(inode));
    }
    ::closedir(dir);
  }
  for (const char* table : {"/net/tcp", "/net/tcp6"}) {
    std::ifstream in(proc + table);
    std::string line;
    std::getline(in, line);  // the heading
    while (std::getline(in, line)) {
      // sl local_address rem_address st tx:rx tr:when retrnsmt uid timeout inode
      std::istringstream fields(line);
      std::string slot, local, remote, state, queues, timer, retransmits, uid, timeout, inode;
      fields >> slot >> local >> remote >> state >> queues >> timer >> retransmits >> uid >>
          timeout >> inode;
      if (state != "0A") continue;  // LISTEN
      if (std::find(sockets.begin(), sockets.end(), inode) == sockets.end()) continue;
      return static_cast<std::uint16_t>(std::stoul(local.substr(local.find(':') + 1), nullptr, 16));
    }
  }
  return 0;
}

bool accepts(std::uint16_t port) {
  const int fd = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  if (fd < 0) return false;
  sockaddr_in a = loopback(port);
  const bool ok = ::connect(fd, reinterpret_cast<sockaddr*>(&a), sizeof a) == 0;
  ::close(fd);
  return ok;
}

}  // namespace

std::unique_ptr<ChildProcess> startServer(std::uint16_t& port) {
  if (embeddedRti()) return startHub(port);
  // rtinode takes port 0 as "any" but does not say which it got: the port is read from
  // its socket, so no other process can take it between choosing and listening.
  auto node = std::make_unique<ChildProcess>(VC_RTINODE,
                                             std::vector<std::string>{"-i", "127.0.0.1:0"}, true);
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
  port = 0;
  while (port == 0 || !accepts(port)) {
    if (!node->running() || std::chrono::steady_clock::now() > deadline)
      throw std::runtime_error("rtinode did not start:\n" + node->transcript());
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    if (port == 0) port = listeningPort(node->pid());
  }
  return node;
}

std::string objectManagementMissing(const std::string& url) {
  ChildProcess probe(binaryPath("vcmover"),
                     {"--federation", url, "--fdd", VC_FDD_FILE, "--name", "object-probe",
                      "--count", "1", "--duration", "0"},
                     true);
  std::string line;
  probe.waitForLine("entities deleted", line, std::chrono::seconds(20));
  const int status = probe.wait(std::chrono::seconds(10));
  if (status == 0) return "";
  const std::string said = probe.transcript();
  const auto refusal = said.find("not supported");
  if (refusal == std::string::npos)
    throw std::runtime_error("vcmover failed for another reason than a missing service:\n" + said);
  const auto start = said.rfind('\n', refusal);
  const auto end = said.find('\n', refusal);
  return said.substr(start == std::string::npos ? 0 : start + 1,
                     end == std::string::npos ? std::string::npos : end - start - 1);
}

}  // namespace vctest
