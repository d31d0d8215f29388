#include "pane/SheetLayout.h"

using namespace platform;

void moveUpperEdge(View& view, double y) {
    Rect frame = view.frame();
    frame.origin.y = y - frame.size.height;
    view.setFrame(frame);
}

void fitToText(TextField& field, double y) {
    Rect frame = field.frame();
    frame.size = field.cellSizeForBounds({{}, frame.size});
    field.setFrame(frame);
    moveUpperEdge(field, y);
}
