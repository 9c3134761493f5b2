#include "support/Pictures.h"
#include "ui/MenuItem.h"

#include <QDir>
#include <QImage>
#include <QPainter>
#include <QSignalSpy>
#include <QStyle>
#include <QStyleFactory>
#include <QTest>
#include <QVBoxLayout>

#include <cmath>
#include <memory>

using ui::MenuItem;

Q_DECLARE_METATYPE(ui::MenuItem::Kind)

namespace {

const QColor panelColour{35, 37, 72};
const QColor labelColour{242, 242, 250};
constexpr int rowWidth = 240;
constexpr int rowHeight = 56;
// The icon and some space around it.
const QRect iconArea{20, 12, 32, 32};

constexpr MenuItem::Kind kinds[] = {MenuItem::Gear, MenuItem::Key, MenuItem::Envelope,
                                    MenuItem::Door};
constexpr const char *kindNames[] = {"gear", "key", "envelope", "door"};

QImage blank(const QSize &size, const QColor &ground, int scale)
{
    QImage image{size * scale, QImage::Format_RGB32};
    image.setDevicePixelRatio(scale);
    image.fill(ground);
    return image;
}

QImage picture(MenuItem &row, const QColor &ground = panelColour, int scale = 1)
{
    QImage image = blank(row.size(), ground, scale);
    row.render(&image, {}, {}, QWidget::DrawChildren);
    return image;
}

/// A row as in the menu, without a label unless given.
class Row : public MenuItem
{
public:
    explicit Row(qint32 icon, const QString &text = {})
        : MenuItem(icon, text, nullptr)
    {
        resize(rowWidth, rowHeight);
    }
};

QRect inked(const QImage &image, const QColor &ground)
{
    QRect found;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixel(x, y) != ground.rgb()) {
                found |= QRect{x, y, 1, 1};
            }
        }
    }
    return found;
}

} // namespace

class tst_MenuItem : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void construction();
    void sizeHint_data();
    void sizeHint();
    void labelAndLayoutFollow();
    void clicks();

    void iconFollowsHeight();
    void unknownKindDrawsNoIcon_data();
    void unknownKindDrawsNoIcon();
    void iconsMatchReferences_data();
    void iconsMatchReferences();

    void ground_data();
    void ground();
    void downCountsBeforeHover();
    void hoverRepaints();

    void label();
    void labelStartsAfterIcon();
    void longLabelEndsBeforeEdge();
};

void tst_MenuItem::construction()
{
    const MenuItem row{MenuItem::Key, QStringLiteral("Text"), nullptr};
    QCOMPARE(row.text(), QStringLiteral("Text"));
    QCOMPARE(row.cursor().shape(), Qt::PointingHandCursor);
    QCOMPARE(row.focusPolicy(), Qt::NoFocus);
}

void tst_MenuItem::sizeHint_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("empty") << QString{};
    QTest::newRow("short") << QStringLiteral("Exit");
    QTest::newRow("long") << QStringLiteral("A very long row that no menu has");
}

void tst_MenuItem::sizeHint()
{
    QFETCH(QString, text);
    Row row{MenuItem::Gear, text};
    QFont font{QStringLiteral("Serif"), 40};
    font.setBold(true);
    row.setFont(font);
    font.setPixelSize(17);
    QCOMPARE(row.sizeHint(), QSize(QFontMetrics{font}.horizontalAdvance(text) + 90, 56));
}

void tst_MenuItem::labelAndLayoutFollow()
{
    QWidget parent;
    auto *const row = new MenuItem{MenuItem::Gear, QStringLiteral("x"), &parent};
    auto *const column = new QVBoxLayout{&parent};
    column->addWidget(row);
    const int before = column->sizeHint().width();
    const QImage picturedBefore = picture(*row);

    row->setLabel(QStringLiteral("Rather a longer text"));
    QCOMPARE(row->text(), QStringLiteral("Rather a longer text"));
    QVERIFY(column->sizeHint().width() > before);
    QVERIFY(picture(*row) != picturedBefore);
}

void tst_MenuItem::clicks()
{
    Row row{MenuItem::Gear};
    row.show();
    const QSignalSpy clicked{&row, &MenuItem::clicked};
    QTest::mouseClick(&row, Qt::LeftButton, {}, {rowWidth - 1, rowHeight - 1});
    QCOMPARE(clicked.count(), 1);
    QTest::mouseClick(&row, Qt::RightButton);
    QCOMPARE(clicked.count(), 1);
    QTest::mousePress(&row, Qt::LeftButton);
    QTest::mouseRelease(&row, Qt::LeftButton, {}, {rowWidth / 2, rowHeight + 20});
    QCOMPARE(clicked.count(), 1);
}

void tst_MenuItem::iconFollowsHeight()
{
    Row row{MenuItem::Envelope};
    const QRect before = inked(picture(row, panelColour, 4), panelColour);
    row.resize(rowWidth + 50, rowHeight + 3);
    // Half of the additional height: 1.5, at four times the size.
    QCOMPARE(inked(picture(row, panelColour, 4), panelColour), before.translated(0, 6));
}

void tst_MenuItem::unknownKindDrawsNoIcon_data()
{
    QTest::addColumn<qint32>("kind");
    QTest::newRow("after the last") << 4;
    QTest::newRow("negative") << -1;
}

void tst_MenuItem::unknownKindDrawsNoIcon()
{
    QFETCH(qint32, kind);
    Row row{kind};
    QCOMPARE(inked(picture(row), panelColour), QRect{});
    row.setLabel(QStringLiteral("x"));
    QVERIFY(!inked(picture(row), panelColour).isEmpty());
}

void tst_MenuItem::iconsMatchReferences_data()
{
    QTest::addColumn<MenuItem::Kind>("kind");
    QTest::addColumn<int>("scale");
    QTest::addColumn<QString>("file");
    for (const MenuItem::Kind kind : kinds) {
        for (const int scale : {1, 2}) {
            const QByteArray name =
                QByteArray{kindNames[kind]} + '-' + QByteArray::number(scale * 100);
            QTest::newRow(name.constData()) << kind << scale << QString::fromLatin1(name + ".png");
        }
    }
}

// With IXOVPN_UPDATE_REFERENCES=1 the images are written instead; look at them before a commit.
void tst_MenuItem::iconsMatchReferences()
{
    QFETCH(MenuItem::Kind, kind);
    QFETCH(int, scale);
    QFETCH(QString, file);
    const QDir folder{QStringLiteral(IXOVPN_TESTS "/references/menuitem")};
    Row row{kind};
    QImage image = picture(row, panelColour, scale);
    image = image.copy(QRect{iconArea.topLeft() * scale, iconArea.size() * scale});
    image.setDevicePixelRatio(1.0);
    if (qEnvironmentVariableIsSet("IXOVPN_UPDATE_REFERENCES")) {
        QVERIFY(QDir{}.mkpath(folder.path()));
        QVERIFY(image.save(folder.filePath(file)));
        return;
    }
    QCOMPARE(support::difference(image, QImage{folder.filePath(file)}, 1), QString{});
}

void tst_MenuItem::ground_data()
{
    QTest::addColumn<bool>("down");
    QTest::addColumn<bool>("under");
    QTest::addColumn<QColor>("below");
    QTest::addColumn<QColor>("expected");
    const QColor black{Qt::black};
    const QColor white{Qt::white};
    // White painted on black has its own alpha as its grey value.
    QTest::newRow("normal") << false << false << black << black;
    QTest::newRow("hover") << false << true << black << QColor{22, 22, 22};
    QTest::newRow("pressed") << true << false << black << QColor{40, 40, 40};
    QTest::newRow("normal on the panel") << false << false << panelColour << panelColour;
    QTest::newRow("hover on the panel") << false << true << panelColour << QColor{54, 56, 88};
    QTest::newRow("pressed on the panel") << true << false << panelColour << QColor{70, 71, 101};
    QTest::newRow("hover on white") << false << true << white << white;
    QTest::newRow("pressed on white") << true << false << white << white;
}

void tst_MenuItem::ground()
{
    QFETCH(bool, down);
    QFETCH(bool, under);
    QFETCH(QColor, below);
    QFETCH(QColor, expected);
    Row row{-1};
    row.setDown(down);
    row.setAttribute(Qt::WA_UnderMouse, under);
    const QImage image = picture(row, below);
    QCOMPARE(image.pixelColor(0, 0), expected);
    QCOMPARE(inked(image, expected), QRect{});
}

void tst_MenuItem::downCountsBeforeHover()
{
    Row row{-1};
    row.setAttribute(Qt::WA_UnderMouse);
    row.setDown(true);
    QCOMPARE(picture(row, Qt::black).pixelColor(5, 5), QColor(40, 40, 40));
}

void tst_MenuItem::hoverRepaints()
{
    class Paints : public QObject
    {
    public:
        int count = 0;

    protected:
        bool eventFilter(QObject * /*watched*/, QEvent *event) override
        {
            count += event->type() == QEvent::Paint ? 1 : 0;
            return false;
        }
    };
    // The one style of Qt that does not set WA_Hover, which repaints widgets under the mouse.
    const std::unique_ptr<QStyle> style{QStyleFactory::create(QStringLiteral("Windows"))};
    QWidget window;
    window.resize(400, 200);
    MenuItem row{MenuItem::Gear, QStringLiteral("Text"), &window};
    row.setStyle(style.get());
    row.setGeometry(0, 0, rowWidth, rowHeight);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    QTest::mouseMove(window.windowHandle(), {301, 151});
    QCoreApplication::processEvents();

    Paints paints;
    row.installEventFilter(&paints);
    QTest::mouseMove(window.windowHandle(), {50, 20});
    QTRY_VERIFY(row.underMouse());
    QTRY_COMPARE(paints.count, 1);
    QTest::mouseMove(window.windowHandle(), {300, 150});
    QTRY_VERIFY(!row.underMouse());
    QTRY_COMPARE(paints.count, 2);
}

void tst_MenuItem::label()
{
    constexpr int scale = 2;
    const QString text = QStringLiteral("Éçjğ");
    Row row{-1, text};
    QFont font{QStringLiteral("Sans"), 30};
    font.setItalic(true);
    row.setFont(font);

    QImage expected = blank(row.size(), panelColour, scale);
    {
        QPainter painter{&expected};
        painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
        font.setPixelSize(17);
        painter.setFont(font);
        painter.setPen(labelColour);
        painter.drawText(QRect{66, 0, rowWidth - 90, rowHeight}, Qt::AlignLeft | Qt::AlignVCenter,
                         text);
    }
    QVERIFY(!inked(expected, panelColour).isEmpty());
    QCOMPARE(picture(row, panelColour, scale), expected);
}

void tst_MenuItem::labelStartsAfterIcon()
{
    Row row{-1, QStringLiteral("\u2588\u2588")};
    const QRect ink = inked(picture(row), panelColour);
    QVERIFY2(std::abs(ink.left() - 66) <= 1, QByteArray::number(ink.left()).constData());
    QVERIFY(std::abs(ink.center().y() - rowHeight / 2) <= 4);
}

void tst_MenuItem::longLabelEndsBeforeEdge()
{
    Row row{-1, QStringLiteral("w").repeated(60)};
    const QRect ink = inked(picture(row), panelColour);
    QCOMPARE(ink.right(), 66 + rowWidth - 90 - 1);
}

QTEST_MAIN(tst_MenuItem)

#include "tst_menuitem.moc"
