// vcctl: every command of the remote controller and the remote drawer from the shell,
// plus the viewer's state, a listener and a decoder. Run 'vcctl --help'.
#include "commands.h"
#include "installedFdd.h"
#include "link.h"
#include "output.h"
#include "toolSupport.h"

namespace {

using DtCmdLine::Type;

}  // namespace

int main(int argc, char** argv) {
  vcctl::routeLibraryOutput();

  DtCmdLine::Command cli("vcctl",
                         "Steers the viewers of a simulation network and draws in their scenes.");
  cli.option(
         "federation", Type::Text,
         "federation to join: rti://HOST:PORT/NAME through a hub, or NAME for the hub on this host")
      .placeholder("URL")
      .defaultValue("VistrelControl");
  cli.option("fdd", Type::Text, "object model file that defines ViewControl")
      .placeholder("FILE")
      .defaultValue(vctools::installedFdd());
  cli.option("name", Type::Text, "vcctl's federate name and the sender id of its PDUs")
      .placeholder("ID")
      .defaultValue("vcctl");
  cli.option("viewer", Type::Text, "the viewer addressed; 0:0:0 addresses every viewer")
      .placeholder("ID")
      .defaultValue("0:0:0");
  cli.option("dry-run", Type::Flag,
             "join nothing: print each PDU's bytes in hex and its fields instead of sending it");
  cli.option("allow-new-federation", Type::Flag,
             "send even when the federation did not exist yet (vcctl then creates it empty, "
             "and no viewer can receive what it sends)");
  cli.version(vctools::versionLines("vcctl"));
  cli.details(
      "View:     absolute tether compass mimic turret orbit pivot track mimic-track\n"
      "          tether-track group wide-group, and the group members: primary secondary\n"
      "          primary-secondary set-group add-to-group remove-from-group\n"
      "Moving:   reset move turn set stepsize turnrate mode\n"
      "Settings: option NAME [VALUE]   ('vcctl option --help' lists them)\n"
      "Drawing:  draw KIND             ('vcctl draw --help' lists the kinds), then show hide\n"
      "          remove add-to-layer remove-from-layer show-attribute hide-attribute value\n"
      "Other:    state listen decode\n"
      "\n"
      "Global options go before the command:\n"
      "  vcctl --federation rti://127.0.0.1:15160/Demo --viewer viewer-1 orbit 1:1:1 --radius 500\n"
      "  vcctl --dry-run draw text2d --id 3 --at 0.1,0.9 Hello\n"
      "Exit status:\n"
      "  0  done: the RTI took every PDU, and the viewer answered where an answer is awaited\n"
      "  1  failed at run time: the federation could not be joined, did not exist, lacks\n"
      "     ViewControl, or was lost, or no answer came; the message says what did not happen\n"
      "  2  a bad command line: nothing was sent");

  vcctl::Registry registry;
  vcctl::declareViewCommands(cli, registry);
  vcctl::declareMovementCommands(cli, registry);
  vcctl::declareOptionCommands(cli, registry);
  vcctl::declareDrawCommands(cli, registry);
  vcctl::declareSceneCommands(cli, registry);
  vcctl::declareReceiveCommands(cli, registry);
  vcctl::declareDecodeCommand(cli, registry);

  DtCmdLine::Args args = cli.parseOrExit(argc, argv);
  const DtCmdLine::Args& leaf = args.leaf();
  const vcctl::Handler* handler = registry.find(leaf);
  if (!handler) leaf.fail("missing command");

  vcctl::Settings settings;
  settings.federation = args.text("federation");
  settings.fdd = args.text("fdd");
  settings.name = args.text("name");
  settings.viewer = args.text("viewer");
  settings.dryRun = args.flag("dry-run");
  settings.allowNewFederation = args.flag("allow-new-federation");
  if (!settings.dryRun) {
    std::string problem = vctools::federationUrlProblem(settings.federation, false);
    if (!problem.empty()) args.fail("option '--federation': " + problem);
  }
  try {
    vcctl::Link link(settings);
    int code = (*handler)(leaf, link);
    link.close();
    return code;
  } catch (const vcctl::LinkError& e) {
    vcctl::complain("%s", e.what());
  } catch (const DtException& e) {
    vcctl::complain("%s", e.what());
  }
  return 1;
}
