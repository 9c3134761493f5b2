#pragma once

#include <QLabel>

namespace ui {

/// A label for rich text with links, which open outside the program.
///
/// Mouse and keyboard reach every link. Unlike with the toolkit's own label, the Tab key that
/// enters the label takes a link at once, and the keyboard leaves the links in both directions.
class LinkLabel : public QLabel
{
    Q_OBJECT

public:
    explicit LinkLabel(QWidget *parent);

    /// Makes the label one link to this address and nothing else.
    void showAddress(const QString &address);
    /// Shows rich text of any kind, with the links in the program's style.
    void showMarkup(const QString &markup);
    /// Empty unless showAddress() was called.
    QString address() const { return shownAddress; }

Q_SIGNALS:
    /// The keyboard has come to a link; its text is selected.
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
