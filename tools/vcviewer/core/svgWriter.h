#pragma once
// The viewer's picture of itself as one standalone SVG document: the 2D overlay in screen
// coordinates beside a plan view (from above, x east, y north) of the entities and the 3D
// drawings, and a caption with the eyepoint and the settings.
#include <string>

namespace vcviewer {

class Scene;
class Settings;
class ViewState;
struct WorldView;

/// Hidden drawings and drawings in a hidden layer are left out. The plan is drawn in the
/// local frame of placement.h, with the entities as darts along their heading, their
/// markings and short trails, and the eyepoint with the direction it looks. What hangs on
/// an entity not known here is drawn at that entity's designator in a tray under the plan.
std::string renderSvg(const std::string& viewerId, const ViewState& view, const Settings& settings,
                      const Scene& scene, const WorldView& world);

}  // namespace vcviewer
