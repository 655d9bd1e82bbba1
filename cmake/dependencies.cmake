# Third-party libraries the library itself links. Each comes from Debian's packages
# (scripts/bootstrap installs them); nothing is downloaded at build time.
# Later modules (text rasterizer: FreeType, fontconfig) add themselves here.
