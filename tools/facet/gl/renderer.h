// Drawing a facet::scene with OpenGL: lit faces with their colors and textures, stencil
// shadows for every light, outline edges, lines, text labels and billboards.
//
// The renderer draws into whatever context is current (an offscreen_context for the tool);
// it keeps nothing of a frame but the shadow-volume cache, so a host can call it per frame.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "facet/appearance.h"
#include "facet/scene.h"
#include "gl/shadow_pass.h"
#include "gl/view.h"

namespace facet_gl {

class texture_store;

/// What a frame shows.
struct render_settings {
    /// Black-and-white mode: faces white (objects marked black-in-bw black), outlines and lines
    /// black, a white background, textures only on objects that ask for them in this mode.
    bool bw = false;
    bool shadows = true;   ///< stencil shadows of every light
    bool outlines = true;  ///< sharp edges and silhouettes for the view
    /// Where nothing is drawn (color mode; black-and-white mode uses white).
    graphics::color background{236, 239, 244};
};

/// Wall-clock seconds of each stage of a frame, and what was drawn.
struct frame_stats {
    double meshes = 0.0;          ///< building the objects' meshes
    double edges = 0.0;           ///< outline edges for the view
    double shadow_volumes = 0.0;  ///< the volume cache's cycle
    double upload = 0.0;          ///< vertex buffers (faces, lines, edges, closed volumes)
    double draw = 0.0;            ///< the GL passes, until drawing has finished
    std::size_t triangles = 0;    ///< faces drawn
    std::size_t edges_drawn = 0;  ///< outline edges and lines drawn
    std::size_t volume_triangles = 0;
    std::size_t lights = 0;
};

/// Draws scenes into the current GL context.
///
/// Lighting: an ambient pass, then one additive diffuse pass per light in which the surfaces
/// inside that light's shadow volumes are masked by the stencil buffer. The lights are the
/// scene's light objects at their world positions, or default_light when there is none.
/// Faces with a brush alpha below 255 are blended after the opaque ones (lit by every light,
/// not shadowed). Texture modes: modulate multiplies the lit color, replace shows the texture
/// unlit, decal and blend apply it in the ambient pass only.
///
/// Text objects show their label (graphics::get_label_repos, through the global texture
/// manager, which must then be `textures`) at their position, facing the screen, on top of
/// everything, at the label's pixel size. Billboards are screen-facing rectangles of their
/// width x height in world units, in their brush color, textured when the object's texturing
/// is on.
class renderer {
public:
    /// `textures` holds the textures faces refer to; it must outlive the renderer.
    explicit renderer(texture_store& textures) : m_textures(textures) {}
    renderer(const renderer&) = delete;
    renderer& operator=(const renderer&) = delete;

    /// Receives each stage's name ("building meshes", ...) with the fraction done (0 .. 1).
    void set_progress(std::function<void(const std::string&, double)> report) {
        m_report = std::move(report);
    }

    /// Draws `s` as seen through `v` into the current context's framebuffer, whose size must
    /// be the projector's viewport. Builds dirty meshes and sets the outline marks of every
    /// mesh for this view. An object whose mesh cannot be built (its builder throws) ends the
    /// frame with std::runtime_error "object '<name>': <problem>".
    frame_stats render(const facet::scene& s, const view& v, const render_settings& settings);

    /// The shadow volumes kept across frames.
    shadow_volume_map& shadow_volumes() { return m_shadows.volumes(); }

private:
    void report(const std::string& stage, double fraction) const {
        if (m_report) m_report(stage, fraction);
    }

    texture_store& m_textures;
    shadow_pass m_shadows;
    std::function<void(const std::string&, double)> m_report;
};

/// Builds the mesh of every object of `s` that is dirty. Throws std::runtime_error
/// "object '<name>': <problem>" for the first object whose mesh builder throws.
void build_meshes(const facet::scene& s,
                  const std::function<void(double)>& report = std::function<void(double)>());

/// The world positions of the light objects of `s` in scene order.
std::vector<vector3d> scene_lights(const facet::scene& s);

}  // namespace facet_gl
