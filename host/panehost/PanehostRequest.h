// What panehost's command line asks for.
#pragma once

#include <QString>

namespace host {

struct Request {
    QString bundle;      // never empty
    QString screenshot;  // the file; empty: a window
    QString tab;         // a title; empty: the first
    int row = -1;        // -1: the pane's own choice
    bool dark = false, choosesPlatform = false, choosesStyle = false, namesBundle = false;
};

// Ends the program for --help, --version (status 0) and wrong usage (2), none of which needs a display.
Request requestFrom(int argc, char** argv);

}  // namespace host
