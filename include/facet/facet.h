// The whole public interface of facet in one include.
#pragma once

#include "facet/carray.h"
#include "facet/check.h"
#include "facet/export.h"
#include "facet/geometry.h"
#include "facet/math3d.h"
#include "facet/plane.h"
#include "facet/triangulate.h"
