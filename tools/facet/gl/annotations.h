// Text labels and billboards: objects without a mesh that the renderer draws facing the
// screen.
#pragma once

#include "facet/geometry.h"
#include "facet/scene.h"

namespace facet_gl {

class texture_store;
struct view;
struct render_settings;

/// Draws every visible billboard of `s` (world matrices `world`, in scene order) as a
/// screen-facing rectangle, depth-tested, with a black border when outlines are on. The
/// projection and the world-to-camera matrix `view_matrix` describe the view.
void draw_billboards(const facet::scene& s, const std::vector<matrix44d>& world, const view& v,
                     const render_settings& settings, const texture_store& textures);

/// Sets the process-wide label repository to the look of rendered labels: 128 x 32 pixels,
/// 22-point dark grey text on white, mipmaps up to level 3. Labels made before keep their look.
void use_label_style();

/// Draws the label of every visible text object of `s` centred on its position, on top of
/// everything, at the label texture's pixel size, in both modes (labels are text, not surface
/// textures). Needs the global texture manager to be
/// `textures` (nothing is drawn otherwise); labels are made on first use.
void draw_texts(const facet::scene& s, const std::vector<matrix44d>& world, const view& v,
                const render_settings& settings, texture_store& textures);

}  // namespace facet_gl
