// A design as one module: what its instances hold takes their place.
#ifndef HOST_FLAT_DESIGN_H
#define HOST_FLAT_DESIGN_H

#include "writer.h"

/// A design of one unit, the top, that holds copies of everything below it. Names of what an instance held begin with
/// the instance's name and a dot; black boxes stay instances; bidirectional ports are joined with what they connect.
/// The given design stays as it is. A design without units, after a message, when the result would be too large.
DESIGN flatten_design(const DESIGN_VIEW& view);

#endif
