// The whole public interface of facet in one include.
#pragma once

#include "facet/appearance.h"
#include "facet/bitmap.h"
#include "facet/camera.h"
#include "facet/carray.h"
#include "facet/check.h"
#include "facet/export.h"
#include "facet/geometry.h"
#include "facet/ifs.h"
#include "facet/math3d.h"
#include "facet/objects.h"
#include "facet/plane.h"
#include "facet/primitives.h"
#include "facet/projector.h"
#include "facet/spaces.h"
#include "facet/textures.h"
#include "facet/triangulate.h"
