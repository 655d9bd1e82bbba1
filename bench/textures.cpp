// Texture synthesis at three bitmap sizes each: the mipmap box filter and the hatch generator
// should grow with the pixel count (x16 per step), and so should label rendering, whose font
// size scales with the bitmap (48 pixels per 64) so that the text covers the same share of it.
#include <benchmark/benchmark.h>

#include <facet/textures.h>

using graphics::bitmap;
using graphics::color;

static void mipmap_level(benchmark::State& state) {
    const auto size = static_cast<unsigned short>(state.range(0));
    bitmap src;
    graphics::make_hatched_texture(color(0, 0, 0), color(255, 255, 255), 0.5f, 0.1f, 0.5f, size,
                                   src);
    bitmap dst;
    for (auto _ : state) {
        graphics::create_next_mipmap_level(src, dst);
        benchmark::DoNotOptimize(dst.begin());
    }
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations()) * size * size);
}
BENCHMARK(mipmap_level)->Arg(64)->Arg(256)->Arg(1024);

static void hatched_texture(benchmark::State& state) {
    const auto size = static_cast<unsigned short>(state.range(0));
    bitmap out;
    for (auto _ : state) {
        graphics::make_hatched_texture(color(0, 0, 0), color(255, 255, 255), 0.5f, 0.1f, 0.5f, size,
                                       out);
        benchmark::DoNotOptimize(out.begin());
    }
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations()) * size * size);
}
BENCHMARK(hatched_texture)->Arg(64)->Arg(256)->Arg(1024);

static void label_texture(benchmark::State& state) {
    const auto size = static_cast<unsigned short>(state.range(0));
    const int font_size = size * 3 / 4;
    bitmap out;
    // The first call resolves and loads the font; it stays cached for the timed calls.
    graphics::make_texture_xy("Arial", font_size, color(255, 0, 255), color(255, 255, 0), size,
                              size, "-12", out);
    for (auto _ : state) {
        graphics::make_texture_xy("Arial", font_size, color(255, 0, 255), color(255, 255, 0), size,
                                  size, "-12", out);
        benchmark::DoNotOptimize(out.begin());
    }
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations()) * size * size);
}
BENCHMARK(label_texture)->Arg(64)->Arg(256)->Arg(1024);
