// vcviewer: a headless stand-in for a viewer. It joins the federation under a viewer id,
// applies what is addressed to it, answers state requests, prints one line per command,
// and writes its scene as SVG; with --http it also shows its scene live on a web page.
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "dtCmdLine.h"
#include "installedFdd.h"
#include "liveServer.h"
#include "toolSupport.h"
#include "viewer.h"
#include "vistrelControl.h"
#include "webFiles.h"

namespace {

// Standard input of a job started in the background by a script is /dev/null, and a
// service may have none at all: its end means nothing then, and the viewer runs on until
// it is told to stop.
bool stdinUsable() {
  struct stat in {
  }, null{};
  if (::fstat(0, &in) != 0) return false;
  return !(::stat("/dev/null", &null) == 0 && in.st_dev == null.st_dev && in.st_ino == null.st_ino);
}

// Written beside the target and renamed over it, so a reader never sees half a picture.
bool writeFile(const std::string& path, const std::string& content) {
  std::string temporary = path + ".tmp";
  FILE* file = std::fopen(temporary.c_str(), "wb");
  if (!file) return false;
  bool ok = std::fwrite(content.data(), 1, content.size(), file) == content.size();
  ok = std::fclose(file) == 0 && ok;
  if (ok && std::rename(temporary.c_str(), path.c_str()) == 0) return true;
  std::remove(temporary.c_str());
  return false;
}

// Standard input, split into request lines. A request is a word; a line longer than
// kMaxRequestLine is none, and is dropped as it arrives, so input without line breaks
// costs no memory. Each byte is looked at once.
class RequestLines {
 public:
  static constexpr size_t kMaxRequestLine = 4096;

  // Adds `n` bytes read; calls `each` with every complete line, without its line break.
  template <typename Each>
  void feed(const char* p, size_t n, Each each) {
    while (n > 0) {
      const auto* nl = static_cast<const char*>(std::memchr(p, '\n', n));
      const size_t part = nl ? static_cast<size_t>(nl - p) : n;
      if (!overlong_ && line_.size() + part > kMaxRequestLine) {
        overlong_ = true;
        std::string().swap(line_);
        std::fprintf(stderr,
                     "vcviewer: a request line of more than %zu bytes, ignored up to its end\n",
                     kMaxRequestLine);
      }
      if (!overlong_) line_.append(p, part);
      if (!nl) return;
      if (!overlong_) each(line_);
      overlong_ = false;
      line_.clear();
      p = nl + 1;
      n -= part + 1;
    }
  }

 private:
  std::string line_;
  bool overlong_ = false;
};

constexpr size_t kStdinPerTurn = 1 << 20;

struct Run {
  vcviewer::Viewer* viewer;
  std::string svgPath;
};

void writeSvg(const Run& run) {
  if (run.svgPath.empty()) {
    std::fprintf(stderr, "vcviewer: no --svg file given\n");
    return;
  }
  if (writeFile(run.svgPath, run.viewer->svg())) {
    vctools::printLine("svg written " + run.svgPath);
  } else {
    std::fprintf(stderr, "vcviewer: cannot write %s\n", run.svgPath.c_str());
  }
}

void received(DtVistrelControlInteraction* inter, void* usr) {
  const DtVistrelControlPdu* pdu = inter->vcPdu();
  if (pdu) static_cast<vcviewer::Viewer*>(usr)->receive(*pdu);
}

DtCmdLine::Command commandLine() {
  using DtCmdLine::Type;
  DtCmdLine::Command cli(
      "vcviewer",
      "A headless stand-in for a viewer: applies the control PDUs addressed to it, "
      "answers state requests and draws its scene as SVG.");
  cli.option("id", Type::Text, "the viewer id this viewer answers to").placeholder("ID").required();
  cli.option("federation", Type::Text,
             "federation to join: rti://host:port/Name, or a name on the local hub")
      .shortName('f')
      .placeholder("URL")
      .defaultValue("VistrelControl");
  cli.option("fdd", Type::Text,
             "FDD file with the ViewControl interaction (default: the one shipped)")
      .placeholder("FILE");
  cli.option("name", Type::Text,
             "federate name, which also signs the answers (default: vcviewer-ID)")
      .placeholder("FEDERATE");
  cli.option("svg", Type::Text, "write the scene here on request and when stopping")
      .placeholder("FILE");
  cli.option("http", Type::Text,
             "serve a live page of the scene at HOST:PORT (a bare PORT listens on 127.0.0.1; "
             "port 0 picks a free one)")
      .placeholder("ADDRESS");
  cli.option("http-allow-host", Type::Text,
             "names or addresses, comma-separated, that the page may also be reached under "
             "(it answers to its own: the loopback names, the address it listens on and, "
             "listening on all, the machine's addresses and name)")
      .placeholder("NAMES");
  cli.option("quiet", Type::Flag, "print no line per command").shortName('q');
  cli.option("verbose", Type::Flag, "also print a line for each PDU meant for another viewer")
      .shortName('v');
  cli.option("stdin", Type::Flag, "read requests from standard input; its end stops the viewer")
      .defaultValue("true");
  cli.details(
      "Standard input, one request a line:\n"
      "  svg     write the scene to the --svg file now\n"
      "  state   print the eyepoint mode and its parameters\n"
      "  entities  print the entities known, one line each, then \"entities N\"\n"
      "  quit    stop\n"
      "It stops cleanly, writing the SVG, on quit, at the end of standard input, on SIGINT or\n"
      "SIGTERM, and on the options exit command.\n"
      "\n"
      "With --http it prints \"vcviewer page on http://HOST:PORT/\" and serves a page that\n"
      "shows the scene, the eyepoint, the settings and the last commands as they change.\n"
      "\n"
      "Example:\n"
      "  vcviewer --id 1:1:1 --federation rti://127.0.0.1:15160/VistrelControl --svg scene.svg \\\n"
      "           --http 127.0.0.1:8080\n"
      "\n"
      "Exit status: 0 stopped as asked; 1 failed at run time (the federation could not be\n"
      "joined or lacks ViewControl, so the viewer never said ready; or the connection was\n"
      "lost); 2 a bad command line.");
  cli.version(vctools::versionLines("vcviewer"));
  return cli;
}

}  // namespace

int main(int argc, char** argv) {
  DtCmdLine::Command cli = commandLine();
  DtCmdLine::Args args = cli.parseOrExit(argc, argv);
  const std::string id = args.text("id");
  const std::string url = args.text("federation");
  const std::string urlProblem = vctools::federationUrlProblem(url, false);
  if (!urlProblem.empty()) args.fail("option '--federation': " + urlProblem);
  const std::string fdd = args.has("fdd") ? args.text("fdd") : vctools::installedFdd();
  const std::string name = args.has("name") ? args.text("name") : "vcviewer-" + id;
  const bool quiet = args.flag("quiet");
  bool readStdin = args.flag("stdin") && stdinUsable();

  std::string httpHost;
  int httpPort = 0;
  if (args.has("http") && !vcviewer::parseListenAddress(args.text("http"), httpHost, httpPort)) {
    std::fprintf(stderr, "vcviewer: --http wants HOST:PORT or PORT, not '%s'\n",
                 args.text("http").c_str());
    return 2;
  }

  vctools::infoToStderr();
  vctools::installStopSignals();

  DtExerciseConnStatus status;
  DtExerciseConn conn(url.c_str(), name.c_str(), static_cast<DtFomMapper*>(nullptr), fdd.c_str(),
                      &status);
  if (!status.ok) {
    std::fprintf(stderr, "vcviewer: %s\n", status.message.c_str());
    return 1;
  }
  // Without the class nothing could ever arrive: saying ready would be a lie.
  const std::string modelProblem = vctools::viewControlProblem(conn, fdd);
  if (!modelProblem.empty()) {
    std::fprintf(stderr, "vcviewer: %s\n", modelProblem.c_str());
    return 1;
  }
  DtVistrelControlRegister(&conn);

  vcviewer::Viewer viewer(
      id, name,
      [&conn](const DtVistrelControlPdu& pdu) {
        DtVistrelControlInteraction inter;
        inter.setVcPdu(pdu);
        conn.sendInteraction(inter);
      },
      [quiet](const std::string& line) {
        if (!quiet) vctools::printLine(line);
      });
  viewer.setVerbose(args.flag("verbose"));
  Run run{&viewer, args.has("svg") ? args.text("svg") : std::string()};
  DtVistrelControlInteraction::addCallback(&conn, &received, &viewer);
  // Entities come from the federation as RPR objects. Without them every command still
  // works; the eyepoint modes that name an entity then have nothing to follow.
  std::string entityProblem;
  if (conn.subscribeObjects(vcviewer::Entities::classNames(), vcviewer::Entities::attributeNames(),
                            &viewer.entities(), &entityProblem) == 0)
    std::fprintf(
        stderr, "vcviewer: not following entities: %s\n",
        entityProblem.empty() ? "the object model has no RPR entity class" : entityProblem.c_str());

  // The page's server runs in threads of its own; it gets finished snapshots only, made
  // here on the viewer's thread after each batch of PDUs.
  std::unique_ptr<vcviewer::LiveServer> page;
  std::uint64_t published = 0;
  // A snapshot costs the whole scene as JSON and SVG: under a flood of PDUs one every
  // 40 ms is enough, and a change still reaches the pages within some 60 ms.
  const auto snapshotInterval = std::chrono::milliseconds(40);
  // While entities move, a page gets a snapshot every 200 ms, and less often the more
  // there are (each costs some 270 bytes an entity to write, send and read): 10,000 take
  // one a second. The page moves them on along their velocity in between.
  auto movingInterval = [&viewer] {
    const auto extra = std::chrono::microseconds(80) * viewer.entities().size();
    return std::min(std::chrono::duration_cast<std::chrono::milliseconds>(
                        std::chrono::milliseconds(200) + extra),
                    std::chrono::milliseconds(1000));
  };
  auto lastSnapshot = std::chrono::steady_clock::now();
  if (args.has("http")) {
    page = std::make_unique<vcviewer::LiveServer>(vcviewer::pageFiles());
    if (args.has("http-allow-host")) {
      std::vector<std::string> names;
      const std::string list = args.text("http-allow-host");
      for (size_t at = 0; at <= list.size();) {
        const size_t comma = std::min(list.find(',', at), list.size());
        names.push_back(list.substr(at, comma - at));
        at = comma + 1;
      }
      page->allowHosts(std::move(names));
    }
    std::string error;
    if (!page->start(httpHost, httpPort, error)) {
      std::fprintf(stderr, "vcviewer: %s\n", error.c_str());
      return 1;
    }
    page->publish(viewer.json());
    std::string shownHost =
        httpHost.find(':') == std::string::npos ? httpHost : "[" + httpHost + "]";
    vctools::printLine("vcviewer page on http://" + shownHost + ":" + std::to_string(page->port()) +
                       "/");
  }
  vctools::printLine("vcviewer " + id + " ready on " + url);

  int exitCode = 0;
  std::string why;
  RequestLines requests;
  bool inputFlowing = false;  // standard input had data last turn: more is likely waiting
  while (why.empty()) {
    conn.drainInput(inputFlowing ? 0.0 : 0.02);
    inputFlowing = false;
    // Entities move between updates: while there are any the page gets a fresh snapshot
    // every few frames even when no command came.
    const auto sinceSnapshot = std::chrono::steady_clock::now() - lastSnapshot;
    const bool moving = viewer.entities().size() > 0 && sinceSnapshot >= movingInterval();
    if (page && (viewer.revision() != published || moving) && sinceSnapshot >= snapshotInterval) {
      published = viewer.revision();
      lastSnapshot = std::chrono::steady_clock::now();
      page->publish(viewer.json());
    }
    if (vctools::stopSignal()) why = vctools::stopReason();
    if (viewer.exitRequested()) why = "exit command";
    if (!conn.connected()) {
      std::fprintf(stderr, "vcviewer: connection lost: %s\n", conn.errorText().c_str());
      why = "connection lost";
      exitCode = 1;
    }
    // What has arrived, up to a budget a turn: input is taken at the pace it comes, and
    // the federation still gets its turn between.
    for (size_t taken = 0; readStdin && why.empty() && taken < kStdinPerTurn;) {
      // Once input flows, a writer a moment behind is waited for, briefly.
      pollfd p{0, POLLIN, 0};
      if (::poll(&p, 1, taken > 0 ? 1 : 0) <= 0) break;
      if (p.revents & POLLNVAL) {
        readStdin = false;
        break;
      }
      static char buffer[64 * 1024];
      ssize_t n = ::read(0, buffer, sizeof buffer);
      if (n <= 0) {
        why = "end of input";
        break;
      }
      taken += static_cast<size_t>(n);
      inputFlowing = true;
      requests.feed(buffer, static_cast<size_t>(n), [&](std::string& request) {
        if (!why.empty()) return;
        if (!request.empty() && request.back() == '\r') request.pop_back();
        if (request == "svg") {
          writeSvg(run);
        } else if (request == "state") {
          vctools::printLine("state " + viewer.view().describe());
        } else if (request == "entities") {
          for (const std::string& line : vcviewer::describeEntities(viewer.entities()))
            vctools::printLine(line);
        } else if (request == "quit") {
          why = "quit";
        } else if (!request.empty()) {
          std::fprintf(stderr, "vcviewer: unknown request '%s' (svg, state, entities, quit)\n",
                       request.c_str());
        }
      });
    }
  }

  DtVistrelControlInteraction::removeCallback(&conn, &received, &viewer);
  if (page) page->stop();
  if (exitCode == 0 && !conn.resign()) {
    std::fprintf(stderr, "vcviewer: %s\n", conn.errorText().c_str());
    exitCode = 1;
  }
  if (!run.svgPath.empty()) writeSvg(run);
  vctools::printLine("vcviewer " + id + " stopped: " + why);
  return exitCode;
}
