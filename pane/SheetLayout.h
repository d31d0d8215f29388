// Placing the parts of a sheet below each other. In points; y grows upward.
#pragma once

#include "platform/Controls.h"

// Moves the view, up or down only, until its upper edge is at y.
void moveUpperEdge(platform::View& view, double y);

// Gives the field the size that its whole text needs within its present bounds, and moves its upper edge to y.
void fitToText(platform::TextField& field, double y);
