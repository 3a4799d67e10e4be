#pragma once
// The viewer's state as one JSON document for the live page: the eyepoint, the settings,
// every drawing with what the scene knows of it (visible or not, so the page can tell
// hidden from absent), the panels with their values, the recent commands, and the SVG
// picture drawn from the same scene. Texts from the network are made valid UTF-8.
#include <cstdint>
#include <deque>
#include <string>

namespace vcviewer {

class Scene;
struct WorldView;
class Settings;
class ViewState;
struct CommandRecord;

/// The whole document. `svg` goes in as it is, as the "svg" member. Entities are listed
/// with their dead-reckoned positions and velocities at `world.now`, in geocentric metres,
/// and so are the eyepoint and the place of each end of every 3D drawing; "frame" is the
/// local frame the pictures are drawn in (placement.h) and "time" the moment they show,
/// in seconds on the viewer's steady clock.
std::string renderJson(const std::string& viewerId, const ViewState& view, const Settings& settings,
                       const Scene& scene, const WorldView& world,
                       const std::deque<CommandRecord>& recent, std::uint64_t revision,
                       const std::string& svg);

/// A JSON string literal of `text`: quotes, backslashes and control characters escaped,
/// bytes that are not UTF-8 replaced by U+FFFD.
std::string jsonString(const std::string& text);

}  // namespace vcviewer
