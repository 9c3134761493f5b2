#include "tests/support/NoticeSamples.h"

namespace support {

namespace {

// $P is a picture's path, $D a picture as an address, $S a style file, $F a pipe.
QString filledIn(const char *html)
{
    return QString::fromUtf8(html)
        .replace(QLatin1String{"$P"}, QLatin1String{"/tmp/bait/picture.png"})
        .replace(QLatin1String{"$S"}, QLatin1String{"/tmp/bait/style.css"})
        .replace(QLatin1String{"$F"}, QLatin1String{"/tmp/bait/pipe"})
        .replace(QLatin1String{"$D"}, QLatin1String{"data:image/png;base64,iVBORw0KGgo="});
}

QString repeated(const char *html, int times)
{
    return QString::fromLatin1(html).repeated(times);
}

} // namespace

QList<NoticeSample> hostileNotices()
{
    QList<NoticeSample> samples;
    const auto html = [&samples](const char *name, const char *text) {
        samples.append({name, filledIn(text)});
    };
    const auto text = [&samples](const char *name, const QString &content) {
        samples.append({name, content});
    };

    html("image from a path", R"(<img src="$P">)");
    html("image from a path, unquoted", "<img src=$P>");
    html("image from a file address", R"(<img src="file://$P">)");
    html("image from a file address with a host", R"(<img src="file://localhost$P">)");
    html("image from a file address in capitals", R"(<IMG SRC='FILE://$P'>)");
    html("image with an escaped path", R"(<img src="file:///tmp/bait/p%69cture.png">)");
    html("image with entities in the path", "<img src='&#47;tmp&#47;bait/picture.png'>");
    html("image from a relative path",
         R"(<img src="../../../../../../../../tmp/bait/picture.png">)");
    html("image from an endless device", R"(<img src="/dev/zero">)");
    html("image from an endless device's address", R"(<img src="file:///dev/zero">)");
    html("image from a pipe", R"(<img src="$F">)");
    html("image from a process's folder", R"(<img src="/proc/self/environ">)");
    html("image from a share, backslashes", R"(<img src="\\127.0.0.1\share\picture.png">)");
    html("image from a share, slashes", R"(<img src="//127.0.0.1/share/picture.png">)");
    html("image from a share's address", R"(<img src="file://127.0.0.1/share/picture.png">)");
    html("image from a drive", R"(<img src="C:\Windows\picture.png">)");
    html("image from a named pipe", R"(<img src="\\.\pipe\picture">)");
    html("image from the net", R"(<img src="http://127.0.0.1:47652/picture.png">)");
    html("image from the net, encrypted", R"(<img src="https://127.0.0.1:47652/picture.png">)");
    html("image from a file server", R"(<img src="ftp://127.0.0.1/picture.png">)");
    html("image within its address", R"(<img src="$D">)");
    html("image from the resources", R"(<img src=":/assets/world-map.png">)");
    html("image from the resources' address", R"(<img src="qrc:/assets/world-map.png">)");
    html("image without a source", "<img>");
    html("image with an empty source", "<img src=''>");
    html("image with a source set", R"(<img srcset="$P 1x, $P 2x" src="$P">)");
    html("image as large as a house", R"(<img src="$P" width=2000000000 height=2000000000>)");
    html("image of negative size", R"(<img src="$P" width=-5 height=-5>)");
    html("floating image", R"(<img src="$P" align=left>text<img src="$P" style="float:right">)");
    html("image in a link", R"(<a href="https://example.com"><img src="$P"></a>)");
    html("image in a link to a file", R"(<a href="file://$P"><img src="file://$P"></a>)");
    html("image in a table", R"(<table><tr><td><img src="$P"></td></tr></table>)");
    html("images in a list", R"(<ul><li><img src="$P"><li><img src="$P"></ul>)");
    html("image with a tool tip", R"(<img src="$P" title="<img src='$P'>" alt="<img src='$P'>">)");
    html("tool tip with an image",
         R"(<p title="<img src='$P'>">A tool tip that wants a picture</p>)");
    html("tool tip with an image, as entities",
         R"(<span title="&lt;img src=&quot;$P&quot;&gt;">A tool tip</span>)");
    html("tool tip with a pipe on a link",
         R"(<a href="https://example.com" title="<img src='$F'>">A link with a tool tip</a>)");
    html("tool tip on an empty paragraph", R"(<p title="<img src='$P'>"></p><p>text</p>)");
    html("tool tip on an empty cell",
         R"(<table title="<img src='$P'>" width=300><tr><td title="<img src='$P'>" width=200></td>)"
         "<td>x</td></tr></table>");

    html("background of the body", R"(<body background="$P"><p>text</p></body>)");
    html("background of the body, within its address",
         R"(<body background="$D"><p>text</p></body>)");
    html("background of a table",
         R"(<table background="file://$P" width=200 height=80><tr><td>text</td></tr></table>)");
    html("background of a cell", R"(<table><tr><td background="$P">text</td></tr></table>)");
    html("background of a row", R"(<table><tr background="$P"><td>text</td></tr></table>)");
    html("style: background image", R"-(<p style="background-image:url($P)">text</p>)-");
    html("style: background image, quoted",
         R"-(<p style="background-image:url('file://$P')">text</p>)-");
    html("style: background image within its address",
         R"-(<p style="background-image:url($D)">text</p>)-");
    html("style: background in short", R"-(<p style="background: #000 url($P) repeat">text</p>)-");
    html("style: background of everything",
         "<style>*{background-image:url($P)}</style><p>text</p>");
    html("style: background of a pipe", R"-(<p style="background-image:url($F)">text</p>)-");
    html("style: picture for list items",
         "<ul style=\"list-style-image:url($P)\"><li>text</li></ul>");
    html("style: picture for list items in short",
         "<ul style=\"list-style:url($P)\"><li>x</li></ul>");
    html(
        "style: border image",
        R"-(<table style="border:9px solid;border-image:url($P) 9"><tr><td>text</td></tr></table>)-");
    html("style: content", "<style>p:before,p{content:url($P)}</style><p>text</p>");
    html("style: image", "<style>p{image:url($P);qproperty-pixmap:url($P)}</style><p>text</p>");
    html("style: cursor", R"-(<p style="cursor:url($P),auto">text</p>)-");
    html("style: import", "<style>@import url($S);</style><p>text</p>");
    html("style: import, quoted", "<style>@import \"file://$S\";</style><p>text</p>");
    html("style: import of a pipe", "<style>@import url(file://$F);</style><p>text</p>");
    html("style: import of a pipe and no text", "<style>@import 'file://$F';</style>");
    html("style: import of an endless device", "<style>@import '/dev/zero';</style><p>text</p>");
    html("style: import from the net",
         "<style>@import 'http://127.0.0.1:47652/s.css';</style>text");
    html("style: import for a medium", "<style>@import url($S) screen;</style><p>text</p>");
    html("style: font from a file",
         "<style>@font-face{font-family:x;src:url($P)}p{font-family:x}</style><p>text</p>");
    html("style: escaped", R"-(<p style="b\61 ckground-image:u\72l($P)">text</p>)-");
    html("style: hidden in comments", "<style>/**/@import/**/url($S);<!-- --></style><p>text</p>");
    html("style file", R"(<link rel=stylesheet type="text/css" href="$S"><p>text</p>)");
    html("style file's address",
         R"(<head><link rel=stylesheet href="file://$S"></head><p>text</p>)");
    html("style file from a pipe", R"(<link rel="stylesheet" href="file://$F"><p>text</p>)");
    html("style file within its address",
         R"(<link rel=stylesheet href="data:text/css,p{color:%23ff00ff}"><p>text</p>)");
    html("second style element", "<style>a{background:url($P)}</style><a href='https://x.y'>x</a>");

    html("object", R"(<object data="$P" type="image/png"><p>text</p></object>)");
    html("embed", R"(<embed src="$P"><p>text</p>)");
    html("frame", R"(<iframe src="file://$P"></iframe><frameset><frame src="$P"></frameset>)");
    html("sound and film",
         R"(<audio src="$F" autoplay></audio><video src="$F" poster="$P"></video>)");
    html("input", R"(<input type=image src="$P"><button>text</button>)");
    html("picture element", R"(<picture><source srcset="$P"><img src="$P"></picture>)");
    html("vector image", R"(<svg><image href="$P" xlink:href="$P"/></svg>)");
    html("script", R"(<script src="$S">document.location='file://$P'</script>text)");
    html("base address of a folder", R"(<base href="file:///tmp/bait/"><img src="picture.png">)");
    html(
        "base address in the head",
        R"(<html><head><base href="/tmp/bait/"></head><body><img src="picture.png"></body></html>)");
    html("base address of an element",
         R"(<p xml:base="file:///tmp/bait/"><img src="picture.png"></p>)");
    html("refresh", R"(<meta http-equiv=refresh content="0;url=file://$P"><p>text</p>)");
    html("character set", R"(<meta charset="utf-7"><p>+ADw-img src=$P+AD4-</p>)");
    html("document type", R"(<!DOCTYPE html SYSTEM "file://$F" [<!ENTITY x SYSTEM "$F">]>&x;)");
    html("processing instruction", R"(<?xml-stylesheet href="$S"?><p>text</p>)");

    html("nested quotes", R"(<img title='"<img src="$P">"' src="$P" '"><img src="$P"'>)");
    html("image in a comment that does not end", R"(<!-- <img src="$P"> --!> <img src="$P">)");
    html("unclosed image", R"(text <img src="$P")");
    html("unclosed quotes", R"(text <img src="$P)");
    html("unclosed tags", R"(<table><tr><td><b><i><ul><li><a href="file:///"><img src="$P">)");
    html("tags that close nothing", R"(</a></p></table></style><img src="$P"></body></html>)");
    html("bare brackets", "<<<<>>>> < > <> </> <!> <?> <%");
    html("entities", "&lt;img src=$P&gt; &amp;lt; &#0; &#xD800; &#x10FFFF; &#99999999999; &; &#;");
    html("link to a pipe", R"(<a href="file://$F">text</a>)");
    html("anchors without end", R"(<a name="x" href="#x"><a href=""><a><a href="?">text)");
    html(
        "enormous measures",
        R"(<p style="margin:999999999px;text-indent:999999999px;line-height:99999%">text</p>)"
        "<table width=999999999 cellpadding=99999 cellspacing=99999 border=9999><tr><td>x</td></tr>"
        "</table><hr width=999999999 size=999999999>");
    html("negative measures",
         R"(<p style="margin:-99999px;text-indent:-9999px">text</p>)"
         "<table width=-1 cellpadding=-9 border=-9><tr><td>x</td></tr></table>");
    html("enormous spans",
         "<table><tr><td colspan=2147483647 rowspan=2147483647>x</td><td>y</td></tr></table>");

    QString withNulls = filledIn(R"(<img src="$P">text)");
    for (int i = withNulls.size() - 1; i > 0; i -= 3) {
        withNulls.insert(i, QChar{0});
    }
    text("null characters", withNulls + QChar{0} + filledIn(R"(<img src="$P">)"));
    text("control characters", QStringLiteral("a\x01b\x08c\x0b\x0c\x1b[31m\x7f\u0085\ufffe\uffff"));
    text("writing directions", QStringLiteral(u"\u202e<a href='https://example.com'>\u2066moc.live"
                                              "\u2069</a>\u202c\u200f\u2067\u061c"));
    text("lone surrogates", QString{QChar{0xd800}} + QStringLiteral("x") + QChar{0xdc00});
    text("deep blocks", repeated("<div>", 1000) + QStringLiteral("x"));
    text("deep lists", repeated("<ul><li>", 400) + QStringLiteral("x"));
    text("deep tables", repeated("<table><tr><td>", 500) + filledIn(R"(<img src="$P">)"));
    text("deep floating tables",
         repeated("<table style='float:left'><tr><td>", 40) + filledIn(R"(<img src="$P">)"));
    text("wide tables", QStringLiteral("<table>") +
                            repeated("<tr><td colspan=20000>x</td></tr>", 3) +
                            QStringLiteral("</table>"));
    text("many links", repeated("<a href='file:///x'>x</a> ", 1000));
    text("many images", filledIn(R"(<img src="$P"> <p><img src="$F"></p>)").repeated(300));
    text("a long text", repeated("0123456 ", 16384));
    text("a megabyte of markup", repeated("<!-- 56789abcde -->", 32768) +
                                     repeated("<p title='0123456789'></p>", 1000) +
                                     filledIn(R"(<img src="$P">)"));
    return samples;
}

} // namespace support
