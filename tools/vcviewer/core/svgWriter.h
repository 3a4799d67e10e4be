#pragma once
// The viewer's picture of itself as one standalone SVG document: the 2D overlay in screen
// coordinates beside a plan view (from above, x east, y north) of the 3D drawings, and a
// caption with the eyepoint and the settings.
#include <string>

namespace vcviewer {

class Scene;
class Settings;
class ViewState;

/// Hidden drawings and drawings in a hidden layer are left out. Entities have no position
/// known to the viewer, so what is anchored to one is drawn at that entity's place in a
/// tray under the plan.
std::string renderSvg(const std::string& viewerId, const ViewState& view, const Settings& settings,
                      const Scene& scene);

}  // namespace vcviewer
