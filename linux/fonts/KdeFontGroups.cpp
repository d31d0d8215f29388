#include "linux/fonts/FontSetFiles.h"
#include "linux/texts/DisplayText.h"

#include <glib.h>

#include <memory>
#include <string>
#include <utility>

using platform::FontSet;
using platform::SetOwner;

namespace linux {
namespace {

constexpr std::string_view kGroup = "group", kFamily = "family";

class Groups {
public:
    std::vector<FontSet> read(std::string_view xml) {
        static constexpr GMarkupParser kParser{&Groups::start, &Groups::end, &Groups::text, nullptr, nullptr};
        std::unique_ptr<GMarkupParseContext, decltype(&g_markup_parse_context_free)> context(
            g_markup_parse_context_new(&kParser, G_MARKUP_TREAT_CDATA_AS_TEXT, this, nullptr),
            g_markup_parse_context_free);
        bool isWhole =
            g_markup_parse_context_parse(context.get(), xml.data(), static_cast<gssize>(xml.size()), nullptr) &&
            g_markup_parse_context_end_parse(context.get(), nullptr);
        return isWhole ? std::move(sets_) : std::vector<FontSet>();
    }

private:
    static constexpr int kGroupDepth = 2, kFamilyDepth = 3;  // below the document's element

    static void start(GMarkupParseContext*, const char* element, const char** names, const char** values, void* groups,
                      GError**) {
        static_cast<Groups*>(groups)->startElement(element, names, values);
    }
    static void text(GMarkupParseContext*, const char* text, gsize length, void* groups, GError**) {
        Groups& self = *static_cast<Groups*>(groups);
        if (self.isInFamily_ && self.depth_ == kFamilyDepth) self.family_.append(text, length);
    }
    static void end(GMarkupParseContext*, const char*, void* groups, GError**) {
        static_cast<Groups*>(groups)->endElement();
    }

    void startElement(std::string_view element, const char** names, const char** values) {
        ++depth_;
        if (depth_ == kGroupDepth && (isInGroup_ = element == kGroup && sets_.size() < kMostSets)) {
            FontSet set{{}, SetOwner::KDE, {}, {}};
            for (; *names; ++names, ++values)
                if (std::string_view(*names) == "name") set.name = displayText(*values);
            isInGroup_ = !set.name.empty();
            if (isInGroup_) sets_.push_back(std::move(set));
        }
        if (depth_ == kFamilyDepth) isInFamily_ = isInGroup_ && element == kFamily;
    }

    void endElement() {
        if (depth_-- != kFamilyDepth) return;
        std::string family = displayText(std::exchange(family_, {}));
        if (std::exchange(isInFamily_, false) && !family.empty() && members_++ < kMostMembers)
            sets_.back().families.push_back(family);
    }

    std::vector<FontSet> sets_;
    std::string family_;
    int depth_ = 0;
    std::size_t members_ = 0;
    bool isInGroup_ = false, isInFamily_ = false;
};

}  // namespace

std::vector<FontSet> kdeFontGroups(std::string_view xml) { return Groups().read(xml); }

}  // namespace linux
