// Fields for values stored elsewhere: conversion between values and texts.
#include <charconv>
#include <cmath>
#include <cstdio>

#include "engine/gui/UIEditLine.h"
#include "engine/text/Log.h"

namespace {

/// False unless the whole text, except surrounding spaces, is a number in range.
template <class T>
bool parse(const jString& text, T& value) {
    const std::size_t first = text.find_first_not_of(' ');
    const std::size_t last = text.find_last_not_of(' ');
    if (first == jString::npos) return false;
    const char* const begin = text.data() + first + (text[first] == '+' && last > first ? 1 : 0);
    const char* const end = text.data() + last + 1;
    const auto [rest, error] = std::from_chars(begin, end, value);
    return error == std::errc() && rest == end;
}

void tellDropped(int id, const jString& text, const char* why) {
    jLog::warning("panel field %d: \"%s\" %s; the last value stays", id, text.c_str(), why);
}

}  // namespace

UIInt::UIInt(int id, Getter getter, Setter setter) : m_getter(std::move(getter)), m_setter(std::move(setter)) {
    setId(id);
    UIInt::refresh();
}

void UIInt::refresh() {
    char text[16];
    std::snprintf(text, sizeof text, "%d", m_getter());
    showText(text);
}

void UIInt::commit(const jString& text) {
    int value = 0;
    if (!parse(text, value)) {
        tellDropped(getId(), text, "is no integer");
    } else if (!m_setter(value)) {
        tellDropped(getId(), text, "is refused");
    } else {
        fireChange(value);
    }
}

/// One component of the vector.
class UIDVec3::Field final : public UIEditLine {
public:
    Field(UIDVec3& owner, int component) : m_owner(owner), m_component(component) {}

    void refresh() override {
        char text[400];  // the longest double has 309 digits before the point
        std::snprintf(text, sizeof text, "%.*f", m_owner.m_decimals, m_owner.m_getter()[m_component]);
        showText(text);
    }

    void commit(const jString& text) override {
        double typed = 0.0;
        if (!parse(text, typed) || !std::isfinite(typed)) {
            tellDropped(m_owner.getId(), text, "is no number");
            return;
        }
        dvec3 value = m_owner.m_getter();
        (m_component == 0 ? value.x : m_component == 1 ? value.y : value.z) = typed;
        if (m_owner.m_setter(value)) {
            m_owner.fireChange(0.0);
        } else {
            tellDropped(m_owner.getId(), text, "is refused");
        }
    }

private:
    UIDVec3& m_owner;
    int m_component;
};

UIDVec3::UIDVec3(int id, Getter getter, Setter setter) : m_getter(std::move(getter)), m_setter(std::move(setter)) {
    setId(id);
    setPadding(0);
    for (int i = 0; i < 3; ++i) addChild(std::make_unique<Field>(*this, i));
    for (int i = 0; i < 3; ++i) static_cast<Field*>(getChild(i))->refresh();
}

UIEditLine* UIDVec3::getField(int component) const {
    return static_cast<Field*>(getChild(component));
}

void UIDVec3::setSize(int width, int height) {
    for (int i = 0; i < 3; ++i) getField(i)->setSize(width, height);
}

void UIDVec3::setBackgroundColor(const vec4& color) {
    for (int i = 0; i < 3; ++i) getField(i)->setBackgroundColor(color);
}

bool UIDVec3::isFocused() const {
    return getField(0)->isFocused() || getField(1)->isFocused() || getField(2)->isFocused();
}

void UIDVec3::setDecimals(int decimals) {
    m_decimals = std::clamp(decimals, 0, 15);
}
