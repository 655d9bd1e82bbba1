# Third-party libraries the library itself links. Each comes from Debian's packages
# (scripts/bootstrap installs them); nothing is downloaded at build time.
#
# The text rasterizer (src/text/) draws glyphs with FreeType and finds font files with
# fontconfig. Both are private to libfacet.so: a host links facet::facet and nothing else.
find_package(Freetype REQUIRED)
find_package(Fontconfig REQUIRED)
target_link_libraries(facet PRIVATE Freetype::Freetype Fontconfig::Fontconfig)
