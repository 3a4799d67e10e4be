#pragma once
// What vcctl, vcviewer and vcbench share about being a process of their own on a
// federation: what --version says, which federation addresses make sense for them, and
// whether the federation's object model can carry control PDUs at all.
#include <string>

class DtExerciseConn;

namespace vctools {

/// The lines "--version" prints before the library's: the tool with the package version,
/// and the RTI the build uses.
std::string versionLines(const std::string& tool);

/// Why `url` cannot name the federation a tool joins, or "" when it can. A thread://
/// federation exists inside one process only: a tool running alone there reaches no one,
/// so it is refused unless `inProcessAllowed`.
std::string federationUrlProblem(const std::string& url, bool inProcessAllowed);

/// Why the joined federation's object model cannot carry control PDUs (no "ViewControl"
/// class, or no "ViewControlPdu" parameter in it), or "" when it can. `fdd` is the file
/// this process named, for the message: the model in force is whichever the federation
/// was created with.
std::string viewControlProblem(DtExerciseConn& conn, const std::string& fdd);

}  // namespace vctools
