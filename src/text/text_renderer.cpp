// Text rasterizer: fontconfig resolves a family name to a font file, FreeType draws the glyphs.
//
// Font lookup. A name is matched in bold weight. fontconfig always answers with some font, so
// the answer is only taken when one of its family names is the requested family or one of the
// families fontconfig binds strongly to it (its metric-compatible aliases: "Arial" gives
// Liberation Sans). Otherwise DejaVu Sans Bold is taken under the same rule, and failing that
// whatever fontconfig offers for the name. Where fontconfig marks a match for synthetic
// emboldening (a family without a bold face), the outlines are emboldened.
//
// Layout. Ascent and descent are the font's Windows metrics (OS/2 usWinAscent/usWinDescent,
// else the horizontal header) scaled to the em size and rounded; the line box is their sum.
// The pen advances by the hinted, whole-pixel advance widths, without kerning. The line box is
// centred in the bitmap with floor division, so that text larger than the bitmap is cut at the
// edges exactly as the same text in a larger bitmap would be cropped.
//
// Caches. The FreeType library, a fontconfig configuration of our own (loaded once; the host's
// current configuration is left alone), each face (keyed by file and face index) and each
// resolved name are kept for the life of the process, without locking, and freed at exit.
#include "text/text_renderer.h"

#include <fontconfig/fontconfig.h>
#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_OUTLINE_H
#include FT_SYNTHESIS_H
#include FT_TRUETYPE_TABLES_H

#include <algorithm>
#include <cstring>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace facet::text {

namespace {

constexpr int max_em = 0xffff;
const char* const fallback_family = "DejaVu Sans";

// ---- UTF-8 ------------------------------------------------------------------------------

/// Decodes UTF-8; a byte that does not start a valid, shortest-form sequence of a scalar value
/// stands for the Latin-1 character of the same value.
std::vector<char32_t> decode(const char* text) {
    std::vector<char32_t> out;
    if (!text) return out;
    const auto* s = reinterpret_cast<const unsigned char*>(text);
    const std::size_t n = std::strlen(text);
    for (std::size_t i = 0; i < n;) {
        const unsigned char b = s[i];
        std::size_t len = b < 0x80                ? 1
                          : b >= 0xc2 && b < 0xe0 ? 2
                          : b >= 0xe0 && b < 0xf0 ? 3
                          : b >= 0xf0 && b < 0xf5 ? 4
                                                  : 0;
        char32_t cp = len == 1 ? b : len == 2 ? b & 0x1fu : len == 3 ? b & 0x0fu : b & 0x07u;
        bool valid = len != 0 && i + len <= n;
        for (std::size_t k = 1; valid && k < len; ++k) {
            valid = (s[i + k] & 0xc0u) == 0x80u;
            cp = (cp << 6) | (s[i + k] & 0x3fu);
        }
        if (valid && len >= 3) {
            const char32_t min = len == 3 ? 0x800 : 0x10000;
            valid = cp >= min && cp <= 0x10ffff && !(cp >= 0xd800 && cp <= 0xdfff);
        }
        if (!valid) {
            out.push_back(b);
            ++i;
        } else {
            out.push_back(cp);
            i += len;
        }
    }
    return out;
}

// ---- fontconfig -------------------------------------------------------------------------

struct pattern_deleter {
    void operator()(FcPattern* p) const noexcept { FcPatternDestroy(p); }
};
using pattern_ptr = std::unique_ptr<FcPattern, pattern_deleter>;

struct font_file {
    std::string path;
    int index = 0;
    bool embolden = false;
};

/// True when one of the match's family names is a family the request binds strongly: the
/// requested name itself or an alias configured to stand in for it.
bool family_requested(FcPattern* request, FcPattern* match) {
    FcPatternIter it;
    if (!FcPatternFindIter(request, &it, FC_FAMILY)) return false;
    const int count = FcPatternIterValueCount(request, &it);
    for (int i = 0; i < count; ++i) {
        FcValue wanted;
        FcValueBinding binding;
        if (FcPatternIterGetValue(request, &it, i, &wanted, &binding) != FcResultMatch) continue;
        if (binding == FcValueBindingWeak || wanted.type != FcTypeString) continue;
        FcChar8* family = nullptr;
        for (int k = 0; FcPatternGetString(match, FC_FAMILY, k, &family) == FcResultMatch; ++k) {
            if (FcStrCmpIgnoreCase(family, wanted.u.s) == 0) return true;
        }
    }
    return false;
}

/// The bold font fontconfig picks for `family`; with `exact`, only one of that family or its
/// strong aliases.
bool match_font(FcConfig* config, const char* family, bool exact, font_file& found) {
    pattern_ptr request(FcPatternCreate());
    if (!request) return false;
    FcPatternAddString(request.get(), FC_FAMILY, reinterpret_cast<const FcChar8*>(family));
    FcPatternAddInteger(request.get(), FC_WEIGHT, FC_WEIGHT_BOLD);
    FcPatternAddBool(request.get(), FC_SCALABLE, FcTrue);
    if (!FcConfigSubstitute(config, request.get(), FcMatchPattern)) return false;
    FcDefaultSubstitute(request.get());
    FcResult result = FcResultNoMatch;
    pattern_ptr match(FcFontMatch(config, request.get(), &result));
    if (!match || result != FcResultMatch) return false;
    if (exact && !family_requested(request.get(), match.get())) return false;
    FcChar8* path = nullptr;
    if (FcPatternGetString(match.get(), FC_FILE, 0, &path) != FcResultMatch) return false;
    int index = 0;
    FcPatternGetInteger(match.get(), FC_INDEX, 0, &index);
    FcBool embolden = FcFalse;
    FcPatternGetBool(match.get(), FC_EMBOLDEN, 0, &embolden);
    found.path = reinterpret_cast<const char*>(path);
    found.index = index;
    found.embolden = embolden == FcTrue;
    return true;
}

// ---- FreeType faces ---------------------------------------------------------------------

struct resolved_font {
    FT_Face face = nullptr;  // null: no usable font, draw the background only
    bool embolden = false;
};

class font_cache {
public:
    font_cache() {
        if (FT_Init_FreeType(&m_library) != 0) m_library = nullptr;
        m_config = FcInitLoadConfigAndFonts();
    }
    ~font_cache() {
        for (auto& entry : m_faces) {
            if (entry.second) FT_Done_Face(entry.second);
        }
        if (m_library) FT_Done_FreeType(m_library);
        if (m_config) FcConfigDestroy(m_config);
    }
    font_cache(const font_cache&) = delete;
    font_cache& operator=(const font_cache&) = delete;

    FT_Library library() const { return m_library; }

    resolved_font resolve(const std::string& name) {
        const auto known = m_names.find(name);
        if (known != m_names.end()) return known->second;
        resolved_font font;
        const std::pair<const char*, bool> candidates[] = {
            {name.c_str(), true}, {fallback_family, true}, {name.c_str(), false}};
        for (const auto& [family, exact] : candidates) {
            font_file file;
            if (m_library && m_config && match_font(m_config, family, exact, file) &&
                use(file, font)) {
                break;
            }
        }
        m_names.emplace(name, font);
        return font;
    }

private:
    /// Loads (once) the face of `file`; true if it is a usable scalable face.
    bool use(const font_file& file, resolved_font& font) {
        const auto key = std::make_pair(file.path, file.index);
        auto it = m_faces.find(key);
        if (it == m_faces.end()) {
            FT_Face face = nullptr;
            if (FT_New_Face(m_library, file.path.c_str(), file.index, &face) != 0) face = nullptr;
            if (face && (!FT_IS_SCALABLE(face) || face->units_per_EM == 0)) {
                FT_Done_Face(face);
                face = nullptr;
            }
            it = m_faces.emplace(key, face).first;
        }
        if (!it->second) return false;
        font.face = it->second;
        font.embolden = file.embolden;
        return true;
    }

    FT_Library m_library = nullptr;
    FcConfig* m_config = nullptr;  // our own, so that the host's fontconfig state stays its own
    std::map<std::pair<std::string, int>, FT_Face> m_faces;
    std::map<std::string, resolved_font> m_names;
};

font_cache& fonts() {
    static font_cache cache;
    return cache;
}

// ---- layout and rasterization ----------------------------------------------------------

long long floor_half(long long v) { return v >= 0 ? v / 2 : -((-v + 1) / 2); }

long long scale_to_pixels(long long units, long long em, long long units_per_em) {
    return (units * em + units_per_em / 2) / units_per_em;
}

/// Ascent and descent in pixels at the face's current em size.
std::pair<long long, long long> line_metrics(FT_Face face, int em) {
    long long ascent = face->ascender;
    long long descent = -static_cast<long long>(face->descender);
    const auto* os2 = static_cast<const TT_OS2*>(FT_Get_Sfnt_Table(face, FT_SFNT_OS2));
    if (os2 && os2->version != 0xffffu && os2->usWinAscent + os2->usWinDescent > 0) {
        ascent = os2->usWinAscent;
        descent = os2->usWinDescent;
    }
    return {scale_to_pixels(ascent, em, face->units_per_EM),
            scale_to_pixels(descent, em, face->units_per_EM)};
}

/// Loads the hinted outline of `glyph` into the face's slot; false if it has none.
bool load_outline(const resolved_font& font, FT_UInt glyph) {
    if (FT_Load_Glyph(font.face, glyph, FT_LOAD_DEFAULT | FT_LOAD_NO_BITMAP) != 0) return false;
    if (font.face->glyph->format != FT_GLYPH_FORMAT_OUTLINE) return false;
    if (font.embolden) FT_GlyphSlot_Embolden(font.face->glyph);
    return true;
}

long long advance_of(FT_GlyphSlot slot) { return (slot->advance.x + 32) >> 6; }

/// The coverage of the whole text is gathered in the alpha bytes of the target bitmap (row 0 at
/// the bottom), which draw_text turns into blended colors and sets to 255 afterwards.
class coverage_map {
public:
    explicit coverage_map(graphics::bitmap& target)
        : m_bytes(target.begin()), m_width(target.width()), m_height(target.height()) {
        for (unsigned char* p = target.begin(); p != target.end(); p += 4) p[3] = 0;
    }
    long long width() const { return m_width; }
    long long height() const { return m_height; }
    unsigned char& at(long long x, long long y) { return m_bytes[(y * m_width + x) * 4 + 3]; }

private:
    unsigned char* m_bytes;
    long long m_width;
    long long m_height;
};

/// Adds the coverage of the glyph in the face's slot, its origin at pixel (pen_x, baseline)
/// (y counted upwards from the bottom row), rendering only the part inside the bitmap.
void render_glyph(FT_Library library, FT_GlyphSlot slot, long long pen_x, long long baseline,
                  coverage_map& coverage, std::vector<unsigned char>& scratch) {
    FT_BBox box;
    FT_Outline_Get_CBox(&slot->outline, &box);
    const long long x0 = std::max(0LL, pen_x + (box.xMin >> 6));
    const long long x1 = std::min(coverage.width(), pen_x + ((box.xMax + 63) >> 6));
    const long long y0 = std::max(0LL, baseline + (box.yMin >> 6));
    const long long y1 = std::min(coverage.height(), baseline + ((box.yMax + 63) >> 6));
    if (x0 >= x1 || y0 >= y1) return;
    const long long w = x1 - x0, h = y1 - y0;
    scratch.assign(static_cast<std::size_t>(w * h), 0);
    FT_Outline_Translate(&slot->outline, static_cast<FT_Pos>((pen_x - x0) * 64),
                         static_cast<FT_Pos>((baseline - y0) * 64));
    FT_Bitmap target{};
    target.rows = static_cast<unsigned>(h);
    target.width = static_cast<unsigned>(w);
    target.pitch = -static_cast<int>(w);  // the first bytes hold the lowest row
    target.buffer = scratch.data();
    target.pixel_mode = FT_PIXEL_MODE_GRAY;
    target.num_grays = 256;
    if (FT_Outline_Get_Bitmap(library, &slot->outline, &target) != 0) return;
    for (long long y = 0; y < h; ++y) {
        const unsigned char* src = scratch.data() + y * w;
        for (long long x = 0; x < w; ++x) {
            unsigned char& c = coverage.at(x0 + x, y0 + y);
            c = static_cast<unsigned char>(std::min(255u, unsigned(c) + src[x]));
        }
    }
}

/// Gathers the anti-aliased coverage of `text` (see coverage_map).
void rasterize(const char* font_name, int font_size, const char* text, coverage_map& coverage) {
    const std::vector<char32_t> chars = decode(text);
    if (chars.empty() || font_size <= 0 || coverage.width() == 0 || coverage.height() == 0) {
        return;
    }
    font_cache& cache = fonts();
    const resolved_font font = cache.resolve(font_name ? font_name : "");
    if (!font.face) return;
    const int em = std::min(font_size, max_em);
    if (FT_Set_Pixel_Sizes(font.face, 0, static_cast<FT_UInt>(em)) != 0) return;

    std::vector<FT_UInt> glyphs(chars.size());
    long long text_width = 0;
    for (std::size_t i = 0; i < chars.size(); ++i) {
        glyphs[i] = FT_Get_Char_Index(font.face, chars[i]);
        if (load_outline(font, glyphs[i])) text_width += advance_of(font.face->glyph);
    }
    const auto [ascent, descent] = line_metrics(font.face, em);
    const long long left = floor_half(coverage.width() - text_width);
    const long long top = floor_half(coverage.height() - (ascent + descent));  // downwards
    const long long baseline = coverage.height() - (top + ascent);             // upwards

    std::vector<unsigned char> scratch;
    long long pen_x = left;
    for (const FT_UInt glyph : glyphs) {
        if (pen_x >= coverage.width() + em) break;  // the rest lies right of the bitmap
        if (!load_outline(font, glyph)) continue;
        render_glyph(cache.library(), font.face->glyph, pen_x, baseline, coverage, scratch);
        pen_x += advance_of(font.face->glyph);
    }
}

unsigned char mix(unsigned back, unsigned fore, unsigned c) {
    return static_cast<unsigned char>((back * (255u - c) + fore * c + 127u) / 255u);
}

}  // namespace

void draw_text(const char* font_name, int font_size, const graphics::color& fg,
               const graphics::color& back, const char* text, graphics::bitmap& target) {
    coverage_map coverage(target);
    rasterize(font_name, font_size, text, coverage);
    const unsigned fr = fg.get_red_component(), fgreen = fg.get_green_component(),
                   fb = fg.get_blue_component();
    const unsigned br = back.get_red_component(), bgreen = back.get_green_component(),
                   bb = back.get_blue_component();
    for (unsigned char* p = target.begin(); p != target.end(); p += 4) {
        const unsigned c = p[3];
        p[0] = mix(br, fr, c);
        p[1] = mix(bgreen, fgreen, c);
        p[2] = mix(bb, fb, c);
        p[3] = 255;
    }
}

}  // namespace facet::text
