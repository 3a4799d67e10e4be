#include "toolSupport.h"

#include <csignal>
#include <cstdio>

#include "dtExerciseConn.h"
#include "dtOutput.h"
#include "dtRtiSession.h"

namespace vctools {

std::string versionLines(const std::string& tool) {
  return tool + " " + VC_PACKAGE_VERSION + "\nRTI: " + VC_RTI_DESCRIPTION + "\n";
}

std::string federationUrlProblem(const std::string& url, bool inProcessAllowed) {
  static const std::string kThread = "thread://";
  const bool inProcess = url.compare(0, kThread.size(), kThread) == 0;
  if (inProcess && !inProcessAllowed)
    return "'" + url +
           "' is a federation inside this one process, where no other federate can join: use "
           "rti://HOST:PORT/NAME or NAME";
  // The library leaves other schemes to the RTI; a tool knows it can use only these.
  if (!inProcess && url.find("://") != std::string::npos && url.compare(0, 6, "rti://") != 0)
    return "'" + url + "' has an unknown scheme: use rti://HOST:PORT/NAME or NAME";
  return DtRtiFederationUrl::shapeProblem(url);
}

std::string viewControlProblem(DtExerciseConn& conn, const std::string& fdd) {
  DtFomMapper* mapper = conn.fomMapper();
  DtInterClassDesc* desc = mapper ? mapper->interClassDesc("ViewControl") : nullptr;
  const std::string where = "the object model of federation \"" + std::string(conn.execName()) +
                            "\" (this process named " + fdd + ")";
  if (!desc) return where + " has no interaction class ViewControl: no control PDU can travel";
  dtrti::ParameterHandle handle;
  if (!desc->parameterHandle("ViewControlPdu", &handle))
    return where +
           " has no parameter ViewControlPdu in the interaction class ViewControl: no control "
           "PDU can travel";
  return "";
}

namespace {
volatile std::sig_atomic_t g_stopSignal = 0;
void onSignal(int signal) {
  g_stopSignal = signal;
}
void toStderr(void*, const char* text, size_t length) {
  std::fwrite(text, 1, length, stderr);
}
}  // namespace

void installStopSignals() {
  struct sigaction action {};
  action.sa_handler = onSignal;
  sigemptyset(&action.sa_mask);
  sigaction(SIGINT, &action, nullptr);
  sigaction(SIGTERM, &action, nullptr);
  std::signal(SIGPIPE, SIG_IGN);
}

int stopSignal() {
  return g_stopSignal;
}

const char* stopReason() {
  return g_stopSignal == SIGINT ? "interrupted" : "terminated";
}

void printLine(const std::string& line) {
  std::fwrite(line.data(), 1, line.size(), stdout);
  std::fputc('\n', stdout);
  std::fflush(stdout);
}

void infoToStderr() {
  DtInfo.setSink(toStderr, nullptr);
}

}  // namespace vctools
