#include "commands.h"

namespace vcctl {

DtCmdLine::Command& Registry::add(DtCmdLine::Command& parent, const std::string& name,
                                  const std::string& summary, Handler handler) {
  DtCmdLine::Command& command = parent.command(name, summary);
  handlers_[command.path()] = std::move(handler);
  return command;
}

const Handler* Registry::find(const DtCmdLine::Args& leaf) const {
  auto it = handlers_.find(leaf.name());
  return it == handlers_.end() ? nullptr : &it->second;
}

}  // namespace vcctl
