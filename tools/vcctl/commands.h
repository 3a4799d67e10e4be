#pragma once
// Every vcctl sub-command is declared by one of the declare... functions together with
// the function that runs it, so that a command's options and its use of them sit side by
// side in one file.
#include <functional>
#include <map>
#include <string>

#include "dtCmdLine.h"

namespace vcctl {

class Link;

/// Runs one sub-command; returns the process's exit code. The link is opened (the
/// federation joined) only when the command first asks it for a controller or drawer.
using Handler = std::function<int(const DtCmdLine::Args& args, Link& link)>;

class Registry {
 public:
  /// Declares `name` under `parent`, run by `handler`; returns it for its options.
  DtCmdLine::Command& add(DtCmdLine::Command& parent, const std::string& name,
                          const std::string& summary, Handler handler);
  /// The handler of the command these values were parsed for, or null.
  const Handler* find(const DtCmdLine::Args& leaf) const;

 private:
  std::map<std::string, Handler> handlers_;
};

void declareViewCommands(DtCmdLine::Command& root, Registry& registry);
void declareMovementCommands(DtCmdLine::Command& root, Registry& registry);
void declareOptionCommands(DtCmdLine::Command& root, Registry& registry);
void declareDrawCommands(DtCmdLine::Command& root, Registry& registry);
void declareSceneCommands(DtCmdLine::Command& root, Registry& registry);
void declareReceiveCommands(DtCmdLine::Command& root, Registry& registry);
void declareDecodeCommand(DtCmdLine::Command& root, Registry& registry);

}  // namespace vcctl
