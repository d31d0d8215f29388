// A pointer to an interface object. While the interface file has not connected it, it points at an inert object of its
// kind, so that code using it need not ask.
#pragma once

#include "platform/Controls.h"
#include "platform/FontMenuView.h"

#include <type_traits>

template <typename T>
class Outlet {
public:
    // An object of another kind leaves the outlet as it is.
    void connect(platform::View& object) {
        if (T* typed = as(object)) object_ = typed;
    }
    T* operator->() const { return object_; }
    T& operator*() const { return *object_; }
    T* connected() const { return object_ == &inert() ? nullptr : object_; }  // null while there is none
    bool is(const platform::View* object) const { return object == object_; }

private:
    static T& inert() {
        static T object;
        return object;
    }
    static T* as(platform::View& object) {
        using namespace platform;
        if constexpr (std::is_same_v<T, Button>)
            return object.asButton();
        else if constexpr (std::is_same_v<T, TextField>)
            return object.asTextField();
        else if constexpr (std::is_same_v<T, PopUpButton>)
            return object.asPopUpButton();
        else if constexpr (std::is_same_v<T, TableView>)
            return object.asTableView();
        else if constexpr (std::is_same_v<T, TabView>)
            return object.asTabView();
        else if constexpr (std::is_same_v<T, Panel>)
            return object.asPanel();
        else if constexpr (std::is_same_v<T, ProgressIndicator>)
            return object.asProgressIndicator();
        else if constexpr (std::is_same_v<T, TextView>)
            return object.asTextView();
        else if constexpr (std::is_same_v<T, FontMenuView>)
            return object.asFontMenuView();
        else
            return &object;
    }

    T* object_ = &inert();
};
