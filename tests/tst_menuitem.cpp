#include "ui/MenuItem.h"

#include <QDir>
#include <QImage>
#include <QPainter>
#include <QSignalSpy>
#include <QStyle>
#include <QStyleFactory>
#include <QTest>
#include <QVBoxLayout>
#include <QtMath>

#include <algorithm>
#include <cmath>
#include <memory>
#include <vector>

using ui::MenuItem;

Q_DECLARE_METATYPE(ui::MenuItem::Kind)

namespace {

const QColor panelColour{35, 37, 72};
const QColor iconColour{201, 203, 230};
const QColor labelColour{242, 242, 250};
constexpr int rowWidth = 240;
constexpr int rowHeight = 56;
const QPointF centre{36.0, 28.0};
// The icon and some space around it.
const QRect iconArea{20, 12, 32, 32};
// Differs by font engines and rounding; a pixel's shift differs by far more.
constexpr int referenceTolerance = 8;

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

QPointF polar(const QPointF &around, double radius, double angle)
{
    return {around.x() + radius * std::cos(angle), around.y() + radius * std::sin(angle)};
}

/// Points of an icon that a stroke covers wholly, and points that it leaves alone; relative to
/// the icon's centre.
struct Points
{
    std::vector<QPointF> covered;
    std::vector<QPointF> bare;
};

// A stroke of width 1.8 ends 0.9 beside its line.
constexpr double justInside = 0.83;
constexpr double justOutside = 0.97;
// The toolkit draws circles as polygons that are not that fine.
constexpr double insideCircle = 0.7;
constexpr double outsideCircle = 1.1;

// The end of a line that comes from the other side, with a round cap.
void addEnd(Points &points, const QPointF &end, const QPointF &direction)
{
    points.covered.push_back(end + justInside * direction);
    points.bare.push_back(end + justOutside * direction);
    const QPointF aside{-direction.y(), direction.x()};
    for (const double side : {-1.0, 1.0}) {
        points.covered.push_back(end + side * justInside * aside);
        points.bare.push_back(end + side * justOutside * aside);
        // A square cap would cover this.
        points.bare.push_back(end + 0.75 * direction + side * 0.75 * aside);
    }
}

Points gearPoints()
{
    Points points;
    const double d = M_PI / 32.0;
    for (int i = 0; i < 8; ++i) {
        const double a = 2.0 * M_PI * i / 8.0;
        const double b = 2.0 * M_PI * (i + 0.5) / 8.0;
        for (const double side : {-d, d}) {
            points.covered.push_back(polar({}, 10.5 + justInside, a + side));
            points.bare.push_back(polar({}, 10.5 + justOutside, a + side));
            points.covered.push_back(polar({}, 7.5, b + side));
            points.covered.push_back(polar({}, 7.5 - justInside + 0.1, b + side));
            points.bare.push_back(polar({}, 7.5 - justOutside, b + side));
        }
        // Between a tip and a root the path is straight.
        points.covered.push_back((polar({}, 10.5, a + d) + polar({}, 7.5, b - d)) / 2.0);
        points.covered.push_back(
            (polar({}, 7.5, b + d) + polar({}, 10.5, a + 2.0 * M_PI / 8.0 - d)) / 2.0);
        points.bare.push_back(polar({}, 10.0, b));
        points.bare.push_back(polar({}, 5.5, a));
        for (const double angle : {a, b}) {
            points.covered.push_back(polar({}, 3.2 + insideCircle, angle));
            points.covered.push_back(polar({}, 3.2 - insideCircle, angle));
            points.bare.push_back(polar({}, 3.2 + outsideCircle, angle));
            points.bare.push_back(polar({}, 3.2 - outsideCircle, angle));
        }
    }
    points.bare.push_back({0.0, 0.0});
    return points;
}

Points keyPoints()
{
    Points points;
    const QPointF bow{-4.5, 0.0};
    for (int i = 1; i < 16; ++i) {
        const double angle = 2.0 * M_PI * i / 16.0;
        points.covered.push_back(polar(bow, 4.5 + insideCircle, angle));
        points.covered.push_back(polar(bow, 4.5 - insideCircle, angle));
        points.bare.push_back(polar(bow, 4.5 - outsideCircle, angle));
        if (i > 1 && i < 15) {
            points.bare.push_back(polar(bow, 4.5 + outsideCircle, angle));
        }
    }
    points.bare.push_back(bow);
    points.covered.push_back({0.0, 0.0});
    points.covered.push_back({3.0, justInside});
    points.covered.push_back({3.0, -justInside});
    points.bare.push_back({3.0, justOutside});
    points.bare.push_back({3.0, -justOutside});
    addEnd(points, {10.0, 0.0}, {1.0, 0.0});
    addEnd(points, {5.5, 3.5}, {0.0, 1.0});
    addEnd(points, {8.5, 2.5}, {0.0, 1.0});
    return points;
}

Points envelopePoints()
{
    Points points;
    for (const double side : {-1.0, 1.0}) {
        for (const double level : {-1.0, 1.0}) {
            const QPointF corner{side * 10.5, level * 7.5};
            const QPointF outwards{side * M_SQRT1_2, level * M_SQRT1_2};
            points.covered.push_back(corner);
            // Round, not mitred.
            points.covered.push_back(corner + justInside * outwards);
            points.bare.push_back(corner + (justOutside + 0.02) * outwards);
        }
        points.covered.push_back({side * (10.5 + justInside), 3.0});
        points.bare.push_back({side * (10.5 + justOutside), 3.0});
        points.bare.push_back({side * (10.5 - justOutside), 3.0});
        points.covered.push_back({2.0, side * (7.5 + justInside)});
        points.bare.push_back({2.0, side * (7.5 + justOutside)});
        // Half way along the fold, and as far beside it.
        const QPointF fold{side * 5.25, -3.5};
        points.covered.push_back(fold);
        points.bare.push_back(fold + QPointF{0.0, 1.5});
        points.bare.push_back(fold - QPointF{0.0, 1.5});
    }
    points.covered.push_back({0.0, 0.5});
    points.covered.push_back({0.0, 0.5 + justInside});
    points.bare.push_back({0.0, 0.5 + justOutside + 0.02});
    points.bare.push_back({0.0, -2.0});
    points.bare.push_back({0.0, 4.0});
    return points;
}

Points doorPoints()
{
    Points points;
    for (const double level : {-1.0, 1.0}) {
        addEnd(points, {-1.0, level * 9.0}, {1.0, 0.0});
        points.covered.push_back({-9.0, level * 9.0});
        points.covered.push_back(
            {-9.0 - justInside * M_SQRT1_2, level * (9.0 + justInside * M_SQRT1_2)});
        points.bare.push_back({-9.0 - M_SQRT1_2, level * (9.0 + M_SQRT1_2)});
        // The right side stays open.
        points.bare.push_back({-1.0, level * 4.5});
        addEnd(points, {5.5, level * 4.0}, {-M_SQRT1_2, level * M_SQRT1_2});
        points.covered.push_back({7.5, level * 2.0});
    }
    points.covered.push_back({-9.0 - justInside, 0.0});
    points.bare.push_back({-9.0 - justOutside, 0.0});
    addEnd(points, {-2.0, 0.0}, {-1.0, 0.0});
    points.covered.push_back({2.0, justInside});
    points.bare.push_back({2.0, justOutside});
    points.covered.push_back({9.5 + justInside, 0.0});
    points.bare.push_back({9.5 + justOutside, 0.0});
    points.bare.push_back({5.5, 2.0});
    return points;
}

Points pointsOf(MenuItem::Kind kind)
{
    switch (kind) {
    case MenuItem::Gear:
        return gearPoints();
    case MenuItem::Key:
        return keyPoints();
    case MenuItem::Envelope:
        return envelopePoints();
    case MenuItem::Door:
        return doorPoints();
    }
    return {};
}

QByteArray describe(const QPointF &point, const QColor &colour)
{
    return QByteArray::number(point.x()) + ", " + QByteArray::number(point.y()) + ": " +
           colour.name().toLatin1();
}

void addKinds()
{
    QTest::addColumn<MenuItem::Kind>("kind");
    for (const MenuItem::Kind kind : kinds) {
        QTest::newRow(kindNames[kind]) << kind;
    }
}

} // namespace

class tst_MenuItem : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void construction();
    void hasNoSignalsOfItsOwn();
    void sizeHint_data();
    void sizeHint();
    void labelAndLayoutFollow();
    void clicks();

    void strokes_data();
    void strokes();
    void iconFollowsHeight();
    void unknownKindDrawsNoIcon_data();
    void unknownKindDrawsNoIcon();
    void iconsMatchReferences_data();
    void iconsMatchReferences();

    void ground_data();
    void ground();
    void downCountsBeforeHover();
    void hoverRepaints();

    void label_data();
    void label();
    void labelStartsAfterIcon();
    void longLabelEndsBeforeEdge();
};

void tst_MenuItem::construction()
{
    QWidget parent;
    const MenuItem row{MenuItem::Key, QStringLiteral("Text"), &parent};
    QCOMPARE(row.parentWidget(), &parent);
    QCOMPARE(row.text(), QStringLiteral("Text"));
    QCOMPARE(row.cursor().shape(), Qt::PointingHandCursor);
    QCOMPARE(row.focusPolicy(), Qt::NoFocus);
    QCOMPARE(row.sizePolicy().horizontalPolicy(), QSizePolicy::Expanding);
    QCOMPARE(row.sizePolicy().verticalPolicy(), QSizePolicy::Fixed);
    QCOMPARE(row.minimumHeight(), 56);
    QVERIFY(!row.isCheckable());
}

void tst_MenuItem::hasNoSignalsOfItsOwn()
{
    QCOMPARE(MenuItem::staticMetaObject.methodCount(),
             QAbstractButton::staticMetaObject.methodCount());
    QCOMPARE(MenuItem::staticMetaObject.superClass(), &QAbstractButton::staticMetaObject);
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

void tst_MenuItem::strokes_data()
{
    addKinds();
}

void tst_MenuItem::strokes()
{
    QFETCH(MenuItem::Kind, kind);
    constexpr int scale = 32;
    Row row{kind};
    const QImage image = picture(row, panelColour, scale);
    const auto colourAt = [&image](const QPointF &point) {
        return image.pixelColor(((centre + point) * scale).toPoint());
    };
    const Points points = pointsOf(kind);
    QVERIFY(!points.covered.empty() && !points.bare.empty());
    for (const QPointF &point : points.covered) {
        const QColor colour = colourAt(point);
        QVERIFY2(colour == iconColour, describe(point, colour).constData());
    }
    for (const QPointF &point : points.bare) {
        const QColor colour = colourAt(point);
        QVERIFY2(colour == panelColour, describe(point, colour).constData());
    }
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
    QTest::newRow("largest") << std::numeric_limits<qint32>::max();
    QTest::newRow("smallest") << std::numeric_limits<qint32>::min();
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
    const QImage reference = QImage{folder.filePath(file)}.convertToFormat(QImage::Format_RGB32);
    QCOMPARE(reference.size(), image.size());
    int worst = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QRgb is = image.pixel(x, y);
            const QRgb was = reference.pixel(x, y);
            worst =
                std::max({worst, std::abs(qRed(is) - qRed(was)), std::abs(qGreen(is) - qGreen(was)),
                          std::abs(qBlue(is) - qBlue(was))});
        }
    }
    QVERIFY2(worst <= referenceTolerance, QByteArray::number(worst).constData());
}

void tst_MenuItem::ground_data()
{
    QTest::addColumn<bool>("down");
    QTest::addColumn<bool>("under");
    QTest::addColumn<QColor>("below");
    QTest::addColumn<QColor>("expected");
    const QColor black{Qt::black};
    const QColor white{Qt::white};
    // White over black comes out as its own alpha.
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
    // The one style of the toolkit that does not ask for it.
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

void tst_MenuItem::label_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("scale");
    for (const int scale : {1, 2}) {
        const auto row = [scale](const char *name, const QString &text) {
            QTest::newRow((QByteArray{name} + ' ' + QByteArray::number(scale * 100)).constData())
                << text << scale;
        };
        row("short", QStringLiteral("Exit"));
        row("accents", QStringLiteral("Éçjğ"));
        row("as wide as its place", QStringLiteral("Referral Codes"));
    }
}

void tst_MenuItem::label()
{
    QFETCH(QString, text);
    QFETCH(int, scale);
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
