// Choosing files to read and to write, and one of several things, in sheets on a window. Each handler is called once.
#pragma once

#include "platform/Bundle.h"
#include "platform/InterfaceToolkit.h"

#include <functional>
#include <string>
#include <vector>

class QWidget;

namespace qt {

// Any files of the request's types, in the folder where the user was last. Empty when he cancelled.
void openFilePanel(QWidget* window, const platform::OpenPanelRequest& request, const platform::Bundle* texts,
                   std::function<void(std::vector<std::string> paths)> didEnd);
void openSavePanel(QWidget* window, const platform::SavePanelRequest& request,
                   std::function<void(const std::string& path)> didEnd);
void openChoice(QWidget* window, const platform::ChoiceRequest& request, const platform::Bundle* texts,
                std::function<void(int choice)> didEnd);

}  // namespace qt
