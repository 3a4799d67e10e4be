// vcmover: RPR FOM entities on scripted tracks, for demos, tests and anyone who wants to
// see the viewer follow something without a simulation at hand. It registers N entities,
// moves them along a circle, a racetrack, a line or a waypoint file, sends their Spatial
// by the dead-reckoning thresholds and a heartbeat, and deletes them when it stops.
#include <chrono>
#include <cmath>
#include <cstdio>
#include <string>
#include <thread>
#include <vector>

#include "dtCmdLine.h"
#include "dtExerciseConn.h"
#include "installedFdd.h"
#include "toolSupport.h"
#include "tracks.h"

namespace {

constexpr double kPi = 3.14159265358979323846;

struct Mover {
  DtObjectId object = 0;
  vcrpr::EntityId id;
  std::string marking;
  double offset = 0;  // metres along the track at time 0
  vcrpr::Spatial sent;
  double sentAt = -1e9;
  double allSentAt = -1e9;  // when the identifier, type and marking went along last
};

DtCmdLine::Command commandLine() {
  using DtCmdLine::Type;
  DtCmdLine::Command cli("vcmover",
                         "Moves RPR FOM entities along scripted tracks in a federation.");
  cli.option("federation", Type::Text,
             "federation to join: rti://host:port/Name, or a name on the local hub")
      .shortName('f')
      .placeholder("URL")
      .defaultValue("VistrelControl");
  cli.option("fdd", Type::Text,
             "object model with the RPR entity classes (default: the one shipped)")
      .placeholder("FILE");
  cli.option("name", Type::Text, "federate name").placeholder("FEDERATE").defaultValue("vcmover");
  cli.option("count", Type::Integer, "how many entities")
      .shortName('n')
      .defaultValue("1")
      .range(1, 65535);
  cli.option("track", Type::Text, "the path they follow")
      .choices({"circle", "racetrack", "line", "waypoints"})
      .defaultValue("circle");
  cli.option("waypoints", Type::Text, "file of \"lat lon height\" lines, for --track waypoints")
      .placeholder("FILE");
  cli.option("at", Type::Vector, "centre of the track: latitude, longitude (degrees), height (m)")
      .size(3)
      .placeholder("LAT,LON,H")
      .defaultValue("51.4775,-0.4614,1000");
  cli.option("size", Type::Real, "radius of the circle and the racetrack's bends (m)")
      .defaultValue("2000")
      .range(1, 1e7);
  cli.option("speed", Type::Real, "speed along the track (m/s)").defaultValue("100").range(0, 1e5);
  cli.option("rate", Type::Real, "how often the truth is computed and checked (Hz)")
      .defaultValue("20")
      .range(0.1, 1000);
  cli.option("class", Type::Text, "RPR class of the entities")
      .choices({"Aircraft", "GroundVehicle", "SurfaceVessel", "Spacecraft", "Human"})
      .defaultValue("Aircraft");
  cli.option("marking", Type::Text,
             "marking prefix; entity i is PREFIX plus i (at most 11 characters)")
      .defaultValue("MOVER");
  cli.option("site", Type::Integer, "site of the EntityIdentifiers")
      .defaultValue("1")
      .range(0, 65535);
  cli.option("app", Type::Integer, "application of the EntityIdentifiers")
      .defaultValue("1")
      .range(0, 65535);
  cli.option("algorithm", Type::Text, "dead-reckoning algorithm the entities announce")
      .choices({"static", "fpw", "rvw"})
      .defaultValue("fpw");
  cli.option("duration", Type::Real, "stop after this many seconds (default: until told)")
      .range(0, 1e9);
  cli.details(
      "Entity i (from 1) is site:app:i, marked PREFIXi, named PREFIXi in the federation when\n"
      "the name is free, and starts i/N of the way round the track. The circle is flown\n"
      "clockwise seen from above, starting north of the centre; the racetrack's straights\n"
      "run north-south; the line goes north from the centre; waypoints are flown in order\n"
      "and back to the first.\n"
      "Spatial is sent when others' dead reckoning would be more than 1 m or 3 degrees off,\n"
      "and at least every 5 s. The entities are deleted on SIGINT, SIGTERM and at the end\n"
      "of --duration.\n"
      "\n"
      "Example:\n"
      "  vcmover -f rti://127.0.0.1:15160/Demo -n 3 --track racetrack --marking EAGLE\n"
      "\n"
      "Exit status: 0 stopped as asked with every entity deleted; 1 failed at run time (no\n"
      "join, no RPR classes in the object model, a lost connection); 2 a bad command line.");
  cli.version(vctools::versionLines("vcmover"));
  return cli;
}

vcrpr::DrAlgorithm algorithmOf(const std::string& name) {
  if (name == "static") return vcrpr::DrAlgorithm::Static;
  if (name == "rvw") return vcrpr::DrAlgorithm::RVW;
  return vcrpr::DrAlgorithm::FPW;
}

vcrpr::EntityType typeOf(const std::string& cls) {
  // Kind and domain as distributed simulation numbers them: platform (1) in the air (2),
  // on land (1), on the surface (3), in space (5); a life form (3) on land.
  if (cls == "Human") return {3, 1, 0, 0, 0, 0, 0};
  const std::uint8_t domain = cls == "GroundVehicle"   ? 1
                              : cls == "SurfaceVessel" ? 3
                              : cls == "Spacecraft"    ? 5
                                                       : 2;
  return {1, domain, 0, 0, 0, 0, 0};
}

std::string classPath(const std::string& cls) {
  // Named from HLAobjectRoot: some RTIs know a class by no shorter name.
  return cls == "Human" ? "HLAobjectRoot.BaseEntity.PhysicalEntity.Lifeform.Human"
                        : "HLAobjectRoot.BaseEntity.PhysicalEntity.Platform." + cls;
}

// What the entity's owner says its Spatial is: the truth with the chosen algorithm, and
// on a circle with RVW the acceleration toward the centre that keeps it on the curve.
vcrpr::Spatial spatialOf(const vctrack::Truth& truth, vcrpr::DrAlgorithm algorithm,
                         const vctrack::Truth& slightlyLater, double dt) {
  vcrpr::Spatial s;
  s.algorithm = algorithm;
  s.worldLocation = truth.position;
  s.orientation = truth.orientation;
  if (algorithm != vcrpr::DrAlgorithm::Static) s.velocity = truth.velocity;
  if (algorithm == vcrpr::DrAlgorithm::RVW)
    s.acceleration = (slightlyLater.velocity - truth.velocity) * (1.0 / dt);
  return s;
}

}  // namespace

int main(int argc, char** argv) {
  DtCmdLine::Command cli = commandLine();
  DtCmdLine::Args args = cli.parseOrExit(argc, argv);
  const std::string url = args.text("federation");
  const std::string urlProblem = vctools::federationUrlProblem(url, false);
  if (!urlProblem.empty()) args.fail("option '--federation': " + urlProblem);
  const std::string marking = args.text("marking");
  const int count = static_cast<int>(args.integer("count"));
  if (marking.size() + std::to_string(count).size() > 11)
    args.fail("option '--marking': PREFIX and the largest number must fit 11 characters");
  const std::string trackName = args.text("track");
  if (trackName == "waypoints" && !args.has("waypoints"))
    args.fail("option '--track waypoints' needs '--waypoints FILE'");

  const std::vector<double> at = args.vector("at");
  if (std::fabs(at[0]) > 90 || std::fabs(at[1]) > 180)
    args.fail("option '--at': latitude within +-90, longitude within +-180 degrees");
  vcgeo::Geodetic origin{at[0] * kPi / 180, at[1] * kPi / 180, at[2]};
  const double speed = args.real("speed");
  vctrack::Track track = vctrack::Track::shape(vctrack::Track::Circle, args.real("size"), speed, 0);
  if (trackName == "waypoints") {
    std::vector<vcgeo::Vec3> points;
    std::string error;
    if (!vctrack::readWaypoints(args.text("waypoints"), &origin, &points, &error)) {
      std::fprintf(stderr, "vcmover: %s\n", error.c_str());
      return 2;
    }
    track = vctrack::Track::through(points, speed);
  } else {
    const auto shape = trackName == "racetrack" ? vctrack::Track::Racetrack
                       : trackName == "line"    ? vctrack::Track::Line
                                                : vctrack::Track::Circle;
    track = vctrack::Track::shape(shape, args.real("size"), speed, 0);
  }

  vctools::infoToStderr();
  vctools::installStopSignals();

  const std::string fdd = args.has("fdd") ? args.text("fdd") : vctools::installedFdd();
  DtExerciseConnStatus status;
  DtExerciseConn conn(url.c_str(), args.text("name").c_str(), static_cast<DtFomMapper*>(nullptr),
                      fdd.c_str(), &status);
  if (!status.ok) {
    std::fprintf(stderr, "vcmover: %s\n", status.message.c_str());
    return 1;
  }

  const vcrpr::DrAlgorithm algorithm = algorithmOf(args.text("algorithm"));
  const vcrpr::EntityType type = typeOf(args.text("class"));
  const std::string cls = classPath(args.text("class"));
  std::vector<Mover> movers(static_cast<std::size_t>(count));
  const double spacing = track.length() > 0 ? track.length() / count : 200.0;
  int exitCode = 0;
  for (int i = 0; i < count; ++i) {
    Mover& m = movers[static_cast<std::size_t>(i)];
    m.id = {static_cast<std::uint16_t>(args.integer("site")),
            static_cast<std::uint16_t>(args.integer("app")), static_cast<std::uint16_t>(i + 1)};
    m.marking = marking + std::to_string(i + 1);
    m.offset = spacing * i;
    std::string problem;
    m.object = conn.registerObject(cls, vcrpr::entityAttributeNames(), m.marking, &problem);
    if (!m.object) {
      std::fprintf(stderr, "vcmover: cannot register %s: %s\n", m.marking.c_str(), problem.c_str());
      exitCode = 1;
      break;
    }
  }
  if (exitCode == 0)
    vctools::printLine("vcmover: " + std::to_string(count) + " " + args.text("class") + " on " +
                       trackName + " in " + url + " ready");

  const vctrack::UpdatePolicy policy;
  const double period = 1.0 / args.real("rate");
  const bool bounded = args.has("duration");
  const double duration = bounded ? args.real("duration") : 0.0;
  const auto start = std::chrono::steady_clock::now();
  auto seconds = [&] {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  };
  std::string why;
  std::uint64_t updates = 0;
  const vcrpr::Bytes typeBytes = vcrpr::encode(type);
  while (exitCode == 0 && why.empty()) {
    const double now = seconds();
    for (Mover& m : movers) {
      const double along = m.offset + speed * now;
      const vctrack::Truth truth = vctrack::truthAt(track, origin, along);
      const bool first = m.sentAt < 0;
      if (!first && !policy.due(m.sent, m.sentAt, truth, now)) continue;
      const vctrack::Truth later = vctrack::truthAt(track, origin, along + speed * 0.01);
      m.sent = spatialOf(truth, algorithm, later, 0.01);
      m.sentAt = now;
      const vcrpr::Bytes spatial = vcrpr::encode(m.sent);
      const vcrpr::Bytes id = vcrpr::encode(m.id);
      const vcrpr::Bytes mark = vcrpr::encodeMarking(m.marking);
      // Between heartbeats only Spatial changes; the first update and each heartbeat carry
      // everything, so an entity discovered late gets its identifier and marking within one
      // heartbeat.
      const bool all = now - m.allSentAt >= policy.heartbeat;
      if (all) m.allSentAt = now;
      const DtAttributeValue values[] = {{vcrpr::kSpatial, spatial.data(), spatial.size()},
                                         {vcrpr::kEntityIdentifier, id.data(), id.size()},
                                         {vcrpr::kEntityType, typeBytes.data(), typeBytes.size()},
                                         {vcrpr::kMarking, mark.data(), mark.size()}};
      if (!conn.updateObject(m.object, values, all ? 4 : 1)) {
        std::fprintf(stderr, "vcmover: %s\n", conn.errorText().c_str());
        exitCode = 1;
        break;
      }
      ++updates;
    }
    conn.drainInput(0.0);
    if (!conn.connected()) {
      std::fprintf(stderr, "vcmover: connection lost: %s\n", conn.errorText().c_str());
      exitCode = 1;
    }
    if (vctools::stopSignal()) why = vctools::stopReason();
    if (bounded && seconds() >= duration) why = "duration reached";
    const double next = now + period - seconds();
    if (why.empty() && next > 0) std::this_thread::sleep_for(std::chrono::duration<double>(next));
  }

  int deleted = 0;
  for (const Mover& m : movers)
    if (m.object && conn.deleteObject(m.object)) ++deleted;
  if (!conn.resign()) {
    std::fprintf(stderr, "vcmover: %s\n", conn.errorText().c_str());
    exitCode = 1;
  }
  vctools::printLine("vcmover: " + std::to_string(deleted) + " entities deleted after " +
                     std::to_string(updates) + " updates: " + (why.empty() ? "failed" : why));
  return exitCode;
}
