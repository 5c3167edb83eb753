// Short ways of building widgets, mixed into the windows and dialogs.
#pragma once

#include <QString>
#include <functional>

class QComboBox;
class QHBoxLayout;
class QLabel;
class QLayout;
class QLineEdit;
class QObject;
class QSpinBox;
class QToolButton;
class QVBoxLayout;
class QWidget;

// Everything built is the caller's until a layout or a parent takes it. Null widgets are skipped.
class WindowsAndDialogs {
public:
    virtual ~WindowsAndDialogs();

    virtual QHBoxLayout *hBox(QWidget *w1 = nullptr, QWidget *w2 = nullptr, QWidget *w3 = nullptr,
                              QWidget *w4 = nullptr, QWidget *w5 = nullptr, QWidget *w6 = nullptr);
    virtual QHBoxLayout *hBox(bool stretchBefore, bool stretchAfter, QWidget *w1 = nullptr,
                              QWidget *w2 = nullptr, QWidget *w3 = nullptr, QWidget *w4 = nullptr,
                              QWidget *w5 = nullptr, QWidget *w6 = nullptr);
    virtual QWidget *hWidget(QWidget *w1 = nullptr, QWidget *w2 = nullptr, QWidget *w3 = nullptr,
                             QWidget *w4 = nullptr, QWidget *w5 = nullptr, QWidget *w6 = nullptr);
    virtual QVBoxLayout *vBox(QWidget *w1 = nullptr, QWidget *w2 = nullptr, QWidget *w3 = nullptr,
                              QWidget *w4 = nullptr, QWidget *w5 = nullptr, QWidget *w6 = nullptr);
    virtual QWidget *vWidget(QWidget *w1 = nullptr, QWidget *w2 = nullptr, QWidget *w3 = nullptr,
                             QWidget *w4 = nullptr, QWidget *w5 = nullptr, QWidget *w6 = nullptr);
    virtual QWidget *hWidget(bool stretchBefore, bool stretchAfter, QWidget *w1 = nullptr,
                             QWidget *w2 = nullptr, QWidget *w3 = nullptr, QWidget *w4 = nullptr,
                             QWidget *w5 = nullptr, QWidget *w6 = nullptr);
    virtual QWidget *wrap(QLayout *layout);
    // The value is set, and its text selected, only with `setValue`.
    virtual QSpinBox *spinBox(int max, int min, int value, bool setValue);
    // Rich text.
    virtual QLabel *label(const char *text);
    virtual QLabel *label(const QString &text);
    enum Arrow { NoArrow, DownArrow, RightArrow, UpArrow };
    // A width of 0 leaves the width to the button; the height is always fixed.
    virtual QToolButton *toolButton(const QString &text, int width, int height, int arrow);
    // A field to filter a list by. `changed` is called with it behind each event that it gets, and
    // so behind each key, as long as it lives.
    virtual QLineEdit *filterEdit(const QString &objectName,
                                  std::function<void(QObject *)> changed);
    // Ignores case. A text that isn't there goes into an editable box, and selects the first item
    // of any other.
    virtual void selectComboItem(QComboBox *box, const QString &text);
    virtual QString comboText(QComboBox *box);
};
