// What the toolkit itself says: buttons, file choosers, menus of text fields.
#pragma once

#include <QTranslator>

#include <memory>
#include <string>

namespace host {

// Makes the toolkit speak the language that the bundle at this path speaks to the user, as long as the result lives and
// as far as its translations are installed. Needs an application object. Null where there is nothing to translate.
std::unique_ptr<QTranslator> toolkitTexts(const std::string& bundlePath);

}  // namespace host
