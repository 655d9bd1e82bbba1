// Texture synthesis and the texture repositories.
//
//   create_next_mipmap_level   the box-filtered half-size level of a bitmap
//   make_hatched_texture       a square of soft-edged diagonal stripes
//   make_texture(_xy)          a line of text drawn into a bitmap
//   make_string_texture        a text label registered with the global texture manager
//   make_number_texture        the same for the decimal text of a number
//   texture_manager            the interface a host implements to receive textures
//   pattern_repos              the ids of the fill patterns (get_pattern_repos)
//   label_repos                text labels rendered once and cached by text (get_label_repos)
//
// Every generator builds its result in a new bitmap and swaps it into the caller's bitmap at
// the end, so that a failure (an allocation that throws) leaves the caller's bitmap as it was.
//
// Text is drawn by the platform's font rasterizer under one set of layout rules: the font is
// looked up by family name in bold weight ("Arial" finds its metric twin Liberation Sans); a
// name that finds no font of that family (or of one of its configured metric-compatible
// aliases) falls back to DejaVu Sans Bold, and then to whatever scalable font the system
// offers; with no font at all only the background is drawn. The font size is the em height in
// pixels. The text is one line, laid out with the glyphs' advance widths (no kerning), centred
// horizontally and vertically in the bitmap (the line box is ascent plus descent of the font;
// an odd leftover pixel goes to the right and to the bottom), and not clipped: text larger than
// the bitmap is cut at its edges. Glyphs are anti-aliased; each pixel blends the text color
// over the background color by the glyph's coverage, rounded to the nearest byte. The alpha of
// both colors is ignored: every pixel has alpha 255. The bottom line of the drawing becomes
// row 0 of the bitmap. The text is read as UTF-8; a byte that does not begin a valid UTF-8
// sequence stands for the Latin-1 character of the same value. A null text is an empty text,
// and a null font name finds the fallback font. A font size of 0 or less draws no text.
//
// Fonts are loaded once and kept for the life of the process. Like the rest of the library,
// these functions keep unguarded process-wide state: call them from one thread at a time.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "facet/appearance.h"
#include "facet/bitmap.h"
#include "facet/export.h"

namespace graphics {

/// Replaces `dst` with the next smaller mipmap level of `src`: (width / 2) x (height / 2) pixels
/// (an odd last column or row of `src` is dropped; a source 1 pixel wide or high gives an empty
/// level). Each destination channel is the sum of the 2 x 2 source block's bytes shifted right
/// by 2 (truncating). `src` and `dst` may be the same bitmap.
FACET_API void create_next_mipmap_level(const bitmap& src, bitmap& dst);

/// Replaces `out` with a size x size bitmap of diagonal stripes of `line_color` on
/// `back_color`, in single precision: with u = (x + 0.5) / size and v = (y + 0.5) / size,
/// t = fmod(u + v, period), e = (1 - clamp(sharpness, 0, 1)) * line_width * 0.5 and
/// s = smoothstep(t, 0, e) - smoothstep(t, line_width - e, line_width), each channel (alpha
/// included) is back * (1 - s') + line * s' with s' = clamp(s, 0, 1), rounded to the nearest
/// integer (halves up). smoothstep(x, a, b) is 0 below a, 1 from b on and
/// (3 - 2r) * (r * r) with r = (x - a) / (b - a) in between. Period and line width are in texture
/// units (the whole square is 1 wide); sharpness 1 gives hard edges, 0 the widest ramps. A
/// line width of 0 gives back color only; a period of 0 makes t NaN and s' 1 (line color only).
FACET_API void make_hatched_texture(const graphics::color& line_color,
                                    const graphics::color& back_color, float period,
                                    float line_width, float sharpness, unsigned short size,
                                    bitmap& out);

/// Replaces `out` with a size x size bitmap holding `text` drawn in `font_name` at `font_size`
/// pixels, `text_color` on `back_color` (see the layout rules at the top of this header).
FACET_API void make_texture(const char* font_name, int font_size, const graphics::color& text_color,
                            const graphics::color& back_color, unsigned short size,
                            const char* text, bitmap& out);

/// As make_texture, with a width x height bitmap.
FACET_API void make_texture_xy(const char* font_name, int font_size,
                               const graphics::color& text_color, const graphics::color& back_color,
                               unsigned short width, unsigned short height, const char* text,
                               bitmap& out);

/// Draws `text` into a 64 x 64 bitmap (font "Arial", size 48, blue color(0, 0, 255) on
/// color(224, 224, 255)), hands it to the global texture manager's create_texture and returns
/// the id. The label cache is not used: every call makes a new texture. A global texture
/// manager must be set (checked: "get_global_texture_manager() != nullptr").
FACET_API unsigned make_string_texture(const char* text);

/// make_string_texture of the decimal text of `number` ("-12" for -12).
FACET_API unsigned make_number_texture(int number);

/// The interface through which the library hands textures to the host. The host implements
/// every operation; the library calls only create_texture and set_texture_level, the others are
/// there for the host's own use through the same interface. Ids are the host's; 0 is best kept
/// for "no texture", the value styles and scene objects use for it.
class FACET_API texture_manager {
public:
    /// Does nothing; the library never deletes a texture manager.
    virtual ~texture_manager();
    /// Makes a new texture from `image` (the library keeps no reference to it after the call)
    /// and returns its id.
    virtual unsigned create_texture(const bitmap& image) = 0;
    /// Replaces the full-size image of texture `id` with `image`. Never called by the library.
    virtual void update_texture(unsigned id, const bitmap& image) = 0;
    /// Releases texture `id`. Never called by the library (its textures live as long as the
    /// process).
    virtual void delete_texture(unsigned id) = 0;
    /// Stores `image` as mipmap level `level` of texture `id` (1 is the first level below the
    /// full size, each level half the size of the one above).
    virtual void set_texture_level(unsigned id, const bitmap& image, unsigned level) = 0;
    /// Makes texture `id` the current texture of the host's renderer. Never called by the
    /// library.
    virtual void bind_texture(unsigned id) = 0;
    /// Leaves the host's renderer without a current texture. Never called by the library.
    virtual void unbind_texture() = 0;
};

/// Registers the host's texture manager (null unregisters it). The library does not own it and
/// never deletes it; it must outlive every texture call.
FACET_API void set_global_texture_manager(texture_manager* manager);
/// The registered texture manager, null until one is registered.
FACET_API texture_manager* get_global_texture_manager();

/// The texture ids of the fill patterns, indexed by pattern_repos::style.
class FACET_API pattern_repos {
public:
    /// The patterns; their values index the ids.
    enum style : unsigned {
        hatch = 0,  ///< black diagonal stripes on white
    };

    /// No ids until init is called.
    pattern_repos() = default;

    /// Makes the pattern textures and appends their ids, in style order: the hatch is
    /// make_hatched_texture(black, white, 0.5, 0.1, 0.5, 64) handed to the global texture
    /// manager's create_texture. Calling it again appends a second set of ids (the first set
    /// stays what get_texture_id returns). A global texture manager must be set (checked:
    /// "get_global_texture_manager() != nullptr").
    void init();
    /// The id of pattern `s`. A style without an id (before init) fails the check
    /// "s < m_ids.size()".
    unsigned get_texture_id(style s) const;
    /// True if `id` is one of the pattern ids.
    bool is_pattern(unsigned id) const;

private:
    std::vector<unsigned> m_ids;
};

/// The library's pattern repository, created empty on the first call; call init once a global
/// texture manager is set.
FACET_API pattern_repos& get_pattern_repos();

/// Text labels rendered once and cached by their text. The settings apply to labels rendered
/// after they are changed; a cached label keeps the texture it was given.
class FACET_API label_repos {
public:
    /// Text color(255, 0, 255) on color(255, 255, 0), 64 x 64 pixels, font size 48, no mipmap
    /// levels, empty cache.
    label_repos() = default;

    void set_fg_color(const graphics::color& c) { fg_color = c; }
    void set_bg_color(const graphics::color& c) { bg_color = c; }
    graphics::color get_fg_color() const { return fg_color; }
    graphics::color get_bg_color() const { return bg_color; }

    /// Sets width and height to `size` pixels. Sizes are drawn clamped to 0..65535.
    void set_size(int size) {
        width = size;
        height = size;
    }
    /// Sets the label bitmap size in pixels. Sizes are drawn clamped to 0..65535.
    void set_size(int w, int h) {
        width = w;
        height = h;
    }
    /// The larger of width and height.
    int get_size() const { return width < height ? height : width; }

    /// The font's em height in pixels.
    void set_font_size(int size) { font_size = size; }
    int get_font_size() const { return font_size; }

    /// How many smaller mipmap levels to render for each new label (0: none).
    void set_mipmap_gen_level(int levels) { mipmap_gen_level = levels; }
    int get_mipmap_gen_level() const { return mipmap_gen_level; }

    /// The texture id of the label `text`. The first request draws the label with font "Arial"
    /// at the current settings, hands it to the global texture manager's create_texture and
    /// caches the id; later requests return the cached id. With mipmap_gen_level n > 0, levels
    /// L = 1 .. n are each drawn afresh at width / 2^L x height / 2^L with font size
    /// font_size / 2^L (integer division) and passed to set_texture_level; the levels stop
    /// before the first whose smaller side would be below 1. A global texture manager must be
    /// set (checked: "get_global_texture_manager() != nullptr").
    unsigned get_texture_id(const std::string& text);

private:
    std::map<std::string, unsigned> m_cache;
    graphics::color fg_color{255, 0, 255};
    graphics::color bg_color{255, 255, 0};
    int width = 64;
    int height = 64;
    int font_size = 48;
    int mipmap_gen_level = 0;
};

/// The library's label repository, created with the defaults on the first call.
FACET_API label_repos& get_label_repos();

}  // namespace graphics
