#pragma once

#include <QLabel>

namespace ui {

/// A label for rich text with links, which open outside the program.
///
/// Unlike with QLabel, the Tab key that enters the label selects a link at once, and Tab and
/// Backtab leave the label after the last and the first link.
class LinkLabel : public QLabel
{
    Q_OBJECT

public:
    explicit LinkLabel(QWidget *parent);

    /// Shows one link to this address.
    void showAddress(const QString &address);
    /// Shows rich text with links in the program's style.
    void showMarkup(const QString &markup);
    /// Empty unless showAddress() was called.
    QString address() const { return shownAddress; }

Q_SIGNALS:
    /// Tab or Backtab has selected a link.
    void linkReached();

protected:
    void focusInEvent(QFocusEvent *event) override;
    bool focusNextPrevChild(bool next) override;

private:
    bool hasLink() const;
    bool moveToLink(bool next);

    QString shownAddress;
};

} // namespace ui
