#pragma once
// Runs vcctl to the end and keeps what it printed (stdout and stderr together, in
// order), for the vcctl tests.
#include <chrono>
#include <string>
#include <vector>

#include "process.h"

namespace vctest {

struct VcctlRun {
  int code = -1;
  std::vector<std::string> lines;
  std::string output;  // every line, for failure messages

  // The first line that contains `text`, or "" (tests compare it with what they expect).
  std::string lineWith(const std::string& text) const {
    for (const std::string& line : lines)
      if (line.find(text) != std::string::npos) return line;
    return "";
  }
  bool has(const std::string& text) const { return output.find(text) != std::string::npos; }
  // The lines without the library's once-per-process banner.
  std::vector<std::string> ownLines() const {
    std::vector<std::string> own;
    for (const std::string& line : lines)
      if (line.find("vistrel control API version") == std::string::npos) own.push_back(line);
    return own;
  }
};

// `input`, when given, is written to vcctl's stdin, which is then closed. `program` is
// the vcctl to run: this flavour's unless another is named.
inline VcctlRun runVcctl(const std::vector<std::string>& args, const std::string& input = "",
                         std::chrono::milliseconds timeout = std::chrono::seconds(20),
                         const std::string& program = binaryPath("vcctl")) {
  ChildProcess child(program, args, true);
  if (!input.empty()) child.writeLine(input);
  child.closeStdin();
  VcctlRun run;
  std::string line;
  auto deadline = std::chrono::steady_clock::now() + timeout;
  while (child.readLine(line, std::chrono::duration_cast<std::chrono::milliseconds>(
                                  deadline - std::chrono::steady_clock::now()))) {
    run.lines.push_back(line);
    run.output += line + "\n";
  }
  run.code = child.wait(std::chrono::seconds(5));
  return run;
}

}  // namespace vctest
