#pragma once
// The link is vcctl's one way out to the viewers: a controller for the view and option
// commands and a drawer for the drawings, both over one connection to the federation,
// or, in a dry run, over a transport that prints each PDU instead of sending it.
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "vistrelControl.h"

namespace vcctl {

struct Settings {
  std::string federation;
  std::string fdd;
  std::string name;
  std::string viewer;
  bool dryRun = false;
  /// Go on when joining creates the federation, which no viewer can then be in.
  bool allowNewFederation = false;
};

/// The federation could not be joined, or the connection was lost while sending.
class LinkError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

class ConfirmingController;
class PduPrinter;
class KeepDrawnSender;

class Link {
 public:
  explicit Link(Settings settings);
  ~Link();
  Link(const Link&) = delete;
  Link& operator=(const Link&) = delete;

  const Settings& settings() const { return settings_; }

  /// The controller addressing --viewer and signing with --name; joins on first use.
  DtVistrelRemoteController& controller();
  /// The drawer signing with --name. What it draws stays in the viewers after vcctl
  /// exits: see KeepDrawnSender.
  DtVistrelRemoteDrawer& drawer();
  /// The connection, or null in a dry run.
  DtExerciseConn* connection();
  /// Keeps an object alive until the drawer is gone: a panel points to its template
  /// without owning it.
  void keep(std::unique_ptr<DtVdcObject> object);
  /// For a command that waits for others (listen): a federation it creates is no
  /// mistake, since others may join later.
  void acceptNewFederation() { waitsForOthers_ = true; }
  /// Leaves the federation, if one was joined; LinkError when the RTI did not confirm,
  /// since what was sent just before may then never have left this process.
  void close();

 private:
  void open();

  Settings settings_;
  bool waitsForOthers_ = false;
  std::unique_ptr<PduPrinter> printer_;
  std::vector<std::unique_ptr<DtVdcObject>> kept_;
  std::unique_ptr<DtExerciseConn> conn_;
  std::unique_ptr<ConfirmingController> controller_;
  std::unique_ptr<KeepDrawnSender> keepDrawn_;
  std::unique_ptr<DtVistrelRemoteDrawer> drawer_;
};

/// Short description of a PDU for the one-line reports: "DtVcOrbit" for view control,
/// "DtVdc2DLine object 5" for draw control.
std::string describe(const DtVistrelControlPdu& pdu);

/// Lower-case hexadecimal, two digits a byte, no separators.
std::string toHex(const void* bytes, size_t count);

}  // namespace vcctl
