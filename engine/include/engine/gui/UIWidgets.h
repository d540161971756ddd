// The widgets that show and switch: label, sprite, button, check box, slider.
#pragma once

#include "engine/Api.h"
#include "engine/gui/UIElement.h"

/// A text; the mouse falls through it. Lines end with '\n'.
class ENGINE_API UILabel : public UIElement {
public:
    explicit UILabel(const jString& text = {});
    void setText(const jString& text);
    const jString& getText() const { return m_text; }

protected:
    UISize measure() override;
    void draw(UIPainter& painter) override;
    void noteTexts() override;
    UIElement* find(int, int) override { return nullptr; }

private:
    jString m_text;
};

/// An image under the runtime root, 16 x 16 pixels when no size is set. A missing file costs one log line and shows as
/// a crossed box.
class ENGINE_API UISprite : public UIElement {
public:
    explicit UISprite(const jString& image = {});
    void setImage(const jString& path);

protected:
    UISize measure() override;
    void draw(UIPainter& painter) override;

private:
    int m_texture = 0;  ///< 0 without an image
};

/// A text to click on.
class ENGINE_API UIButton : public UIElement {
public:
    explicit UIButton(const jString& text = {});
    void setText(const jString& text);
    const jString& getText() const { return m_text; }

protected:
    UISize measure() override;
    void draw(UIPainter& painter) override;
    void noteTexts() override;

private:
    jString m_text;
};

/// A box that each click turns over; tells a change, then the click.
class ENGINE_API UICheckBox : public UIElement {
public:
    void setChecked(bool checked) { m_checked = checked; }
    bool isChecked() const { return m_checked; }

protected:
    UISize measure() override;
    void draw(UIPainter& painter) override;
    void release(int x, int y) override;

private:
    bool m_checked = false;
};

/// A value to drag within a range, 0 to 1 at first.
class ENGINE_API UISlider : public UIElement {
public:
    void setMinValue(float value);
    void setMaxValue(float value);
    void setValue(float value);  ///< taken into the range; a NaN is ignored
    float getMinValue() const { return m_min; }
    float getMaxValue() const { return m_max; }
    float getValue() const { return m_value; }

protected:
    UISize measure() override;
    void draw(UIPainter& painter) override;
    void press(int x, int y) override { drag(x, y); }
    void drag(int x, int y) override;

private:
    float m_min = 0.0f;
    float m_max = 1.0f;
    float m_value = 0.0f;
};
