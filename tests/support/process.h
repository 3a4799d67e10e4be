#pragma once
// Child processes for end-to-end tests: start an executable, follow its output line by
// line, talk to its stdin, stop it. Every wait takes a timeout, so a hung child fails a
// test instead of hanging the suite.
//
//   ChildProcess hub = startHub(port);               // rtihub on 127.0.0.1, free port
//   ChildProcess peer(binaryPath("rti_peer"), {hubUrl(port, "Fed"), VC_FDD_FILE, "echo"});
//   std::string line;
//   ASSERT_TRUE(peer.readLine(line, std::chrono::seconds(5)));
//   peer.writeLine("go");
//   peer.kill(SIGKILL);
//   int status = peer.wait(std::chrono::seconds(5));
#include <sys/types.h>

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace vctest {

class ChildProcess {
 public:
  // Starts `path` with `args`. Its stdout (and stderr too when mergeStderr is set) is
  // collected line by line in the background, so the child never blocks on a full pipe;
  // otherwise stderr goes to the test's stderr. Throws std::runtime_error on failure.
  ChildProcess(const std::string& path, const std::vector<std::string>& args,
               bool mergeStderr = false);
  // Kills the child (SIGKILL) if it still runs, and reaps it.
  ~ChildProcess();
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;

  pid_t pid() const { return pid_; }

  // Next output line (without its newline). False on timeout, or at end of output.
  bool readLine(std::string& line, std::chrono::milliseconds timeout);
  // Skips lines until one that contains `text`; returns it in `line`. False on timeout or
  // end of output.
  bool waitForLine(const std::string& text, std::string& line, std::chrono::milliseconds timeout);
  // Every line read so far (consumed or not), for failure messages.
  std::string transcript() const;

  // Writes `line` and a newline to the child's stdin; false when the child closed it.
  bool writeLine(const std::string& line);
  void closeStdin();

  void kill(int signal);
  // Waits for the child to end, and for the rest of its output. Returns its exit code, 128 + the
  // signal that ended it, or -1 on timeout (the child is left running).
  int wait(std::chrono::milliseconds timeout);
  bool running();

 private:
  void collect();

  pid_t pid_ = -1;
  int stdinFd_ = -1;
  int stdoutFd_ = -1;
  int status_ = -1;
  bool reaped_ = false;
  std::thread reader_;
  mutable std::mutex mu_;
  std::condition_variable cv_;
  std::deque<std::string> lines_;
  std::string transcript_;
  bool eof_ = false;
};

// ${VC_BINARY_DIR}/bin/<name><suffix>: where the build puts the programs of the flavour
// these tests are built for (the suffix is "-1516e" for the IEEE 1516-2010 flavour's
// vcctl-1516e and the like, empty for the other); the RTI's own programs have no flavour.
std::string binaryPath(const std::string& name);
// ${VC_BINARY_DIR}/bin/<name>, as it is.
std::string programPath(const std::string& name);

// Whether the build has the hub, i.e. uses the embedded RTI. Built against another RTI
// (RTI1516_ROOT) it does not; tests that need a hub skip with GTEST_SKIP() then.
bool hubAvailable();

// Starts rtihub on 127.0.0.1 with a port the system picks, reads the port back from its
// "rtihub listening on" line, and returns the running hub (stderr merged into its lines).
// Throws std::runtime_error when it does not come up within a few seconds.
// With maxOpenFiles above zero the hub runs with that limit on its file descriptors.
std::unique_ptr<ChildProcess> startHub(std::uint16_t& port,
                                       const std::vector<std::string>& extraArgs = {},
                                       int maxOpenFiles = 0);

// What a running process costs, read from /proc: resident memory in KiB and the CPU time
// it has used in seconds (user and system). -1 when the process is gone.
long residentKiB(pid_t pid);
// Whether resident memory tells what the processes of this build hold. AddressSanitizer
// keeps freed memory in quarantine for a while, so there it does not; bounds on memory
// are checked by the other builds (valgrind runs the hub natively).
#if defined(__SANITIZE_ADDRESS__)
constexpr bool kResidentMemoryTells = false;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
constexpr bool kResidentMemoryTells = false;
#else
constexpr bool kResidentMemoryTells = true;
#endif
#else
constexpr bool kResidentMemoryTells = true;
#endif
double cpuSeconds(pid_t pid);

// Appends what can be read from `fd` to `into` until `into` holds `text` (true), or with
// an empty `text` until the descriptor's writers are all gone (true); false on timeout.
bool readUntil(int fd, std::string& into, const std::string& text,
               std::chrono::milliseconds timeout);

// "rti://127.0.0.1:<port>/<federation>"
std::string hubUrl(std::uint16_t port, const std::string& federation);

// Whether the build runs on the RTI in rti/ (false when built against another one).
bool embeddedRti();

// The server that carries federations across processes for the RTI the build uses: our
// hub, or the other RTI's own server (OpenRTI's rtinode) when the build found one.
// Tests of the library and the tools across processes run on either; what only our hub
// does is tested with startHub().
bool serverAvailable();
// Starts that server on a free 127.0.0.1 port, returns once it accepts connections, and
// sets `port`; hubUrl(port, NAME) then names a federation on it. Throws
// std::runtime_error when it does not come up within a few seconds.
std::unique_ptr<ChildProcess> startServer(std::uint16_t& port);

// Why the RTI behind the federation `url` cannot carry HLA objects (its refusal, such as
// "... is not supported by this RTI"), or "" when it can: found by registering one entity
// there with vcmover. Tests of entities skip themselves with this reason on an RTI that
// does not have object management yet.
std::string objectManagementMissing(const std::string& url);

}  // namespace vctest
