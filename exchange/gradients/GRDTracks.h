#pragma once
// Photoshop and Paint Shop Pro gradients keep colour and opacity as two separate lists of stops, each
// with a midpoint per stop. This turns the pair into one list of stops with alpha.
#include <vector>

#include "exchange/PalColor.h"
#include "exchange/gradients/Gradient.h"

namespace PAL {

struct TrackStop {
    double location;  // 0...1
    double midpoint;  // 0...1 of the way between this stop and its neighbour; 0.5 is a plain mix
    RGB value;        // the colour track uses the colour, the opacity track the alpha
};

// Which neighbour a stop's midpoint lies towards: files of version 5 store it with the stop that ends
// the interval, version 3 (and Paint Shop Pro) with the stop that starts it.
enum class MidpointOwner { endingStop, startingStop };

// Each track is a straight ramp between its stops (with one more stop at an off-centre midpoint,
// carrying the mean of the two ends), held flat past its ends. The result has a stop wherever either
// track has one, two where either has a hard edge, and none where a stop lies on the straight line
// between its neighbours. An empty opacity track is fully opaque; the colour track must not be empty.
std::vector<GradientStop> flattenedTracks(std::vector<TrackStop> colors, std::vector<TrackStop> opacities, MidpointOwner owner);

}  // namespace PAL
