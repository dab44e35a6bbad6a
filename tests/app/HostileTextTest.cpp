// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

// Texts from outside in the window: shown as they are, whatever they look like.

#include "app/MainWindow.h"
#include "base/PathText.h"
#include "manual/LastUsedPayloadStore.h"
#include "support/Printers.h"
#include "support/Samples.h"
#include "support/TempDir.h"

#include <QFontMetricsF>
#include <QNetworkAccessManager>
#include <QQmlNetworkAccessManagerFactory>
#include <QRegularExpression>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/inotify.h>
#include <unistd.h>

#include <ctime>
#include <functional>

namespace quillmark {
namespace {

using namespace Qt::StringLiterals;
using Session = IngestViewModel;
using ::testing::Contains;

// --- What the window does with them ----------------------------------------------------

/// Takes note of every wish for the network.
class NoNetwork : public QQmlNetworkAccessManagerFactory
{
public:
    QNetworkAccessManager *create(QObject *parent) override
    {
        ++wishes;
        return new QNetworkAccessManager(parent);
    }
    std::atomic<int> wishes = 0; // the engine asks from several threads
};

/// Tells whether somebody has opened a file.
class Canary
{
public:
    explicit Canary(const std::filesystem::path &file) : m_events(::inotify_init1(IN_NONBLOCK))
    {
        ::inotify_add_watch(m_events, file.c_str(), IN_OPEN | IN_ACCESS);
    }
    Canary(const Canary &) = delete;
    Canary &operator=(const Canary &) = delete;
    ~Canary() { ::close(m_events); }

    bool sang() const
    {
        std::array<char, 4096> buffer{};
        return ::read(m_events, buffer.data(), buffer.size()) > 0;
    }

private:
    int m_events;
};

class HostileWindow : public test::MainWindow
{
protected:
    HostileWindow() { m_window->resize(m_window->minimumSize()); }

    static SlatePayload payloadOf(const QString &text)
    {
        SlatePayload payload = test::fullPayload();
        payload.sessionId = payload.cameraMake = payload.filmBrand = text;
        payload.cameraModel = payload.filmStock = QString();
        payload.lensMake = std::nullopt;
        payload.lensModel = payload.location = payload.project = payload.date = text;
        payload.rollName = payload.notes = payload.artist = payload.copyright = text;
        return payload;
    }
    static IngestPlan planOf(const QString &text)
    {
        const std::filesystem::path folder = "/rolls/" + text.toStdString();
        return {.folder = folder,
                .detection = {.file = folder / (text.toStdString() + ".jpg"),
                              .payload = payloadOf(text),
                              .raw = text},
                .rollFiles = {folder / "1.jpg"},
                .backupMode = BackupMode::none};
    }
    /// The states that show anything from outside, each with this text wherever it can be.
    static std::vector<Session::State> statesWith(const QString &text)
    {
        const IngestPlan plan = planOf(text);
        LastUsedPayloadStore::save(payloadOf(text));
        return {Session::Scanning{plan.folder},
                Session::Ready{plan},
                Session::DetectionFailed{plan.folder, 3},
                Session::ManualEntry{plan.folder, plan.detection.file},
                Session::Writing{plan},
                Session::Done{{.plan = plan, .mutated = {}, .backups = {}}},
                Session::Error{text}};
    }

    /// Has texts shown that would load a picture, were they anything else than text.
    void expectNothingLoaded(const std::function<void(const QString &)> &show)
    {
        const test::TempDir place;
        const auto picture = place.write("canary.png", "no picture");
        const Canary canary(picture);
        NoNetwork network;
        m_engine.setNetworkAccessManagerFactory(&network);
        show(u"<img src=\"%1\"><img src=\"http://127.0.0.1:9/x.png\">"
             "<link rel=stylesheet href=\"%1\"><script src=\"%1\"></script>"
             "<body background=\"%1\">![](%1)"_s.arg(
                 QUrl::fromLocalFile(QString::fromStdString(picture)).toString()));
        EXPECT_EQ(network.wishes, 0);
        EXPECT_FALSE(canary.sang());
        EXPECT_FALSE(test::readFile(picture).empty());
        EXPECT_TRUE(canary.sang()) << "the canary must be able to sing";
        m_engine.setNetworkAccessManagerFactory(nullptr);
    }

    /// What is shown by items of a class, the fields to type into among them.
    std::vector<QString> textsOf(const char *className) const
    {
        std::vector<QString> texts;
        for (const QQuickItem *item : shownItems()) {
            if (item->inherits(className)) {
                texts.push_back(item->property("text").toString());
            }
        }
        return texts;
    }

    /// Every item that shows text takes it for plain, and none shows a picture from an address.
    void expectAllPlain() const
    {
        int texts = 0;
        for (const QQuickItem *item : shownItems()) {
            if (item->inherits("QQuickText") || item->inherits("QQuickTextEdit")) {
                ++texts;
                EXPECT_EQ(item->property("textFormat").toInt(), Qt::PlainText)
                    << item->property("text").toString().toStdString();
            }
            EXPECT_FALSE(item->inherits("QQuickImageBase")) << item->metaObject()->className();
        }
        EXPECT_GT(texts, 2);
    }
};

TEST_F(HostileWindow, takesEveryTextOnEveryScreenForPlain)
{
    expectAllPlain();
    for (const Session::State &state : statesWith(u"<b>bold</b>"_s)) {
        setState(state);
        expectAllPlain();
    }
    setState(Session::Idle{});
    for (const Qt::Key key : {Qt::Key_F10, Qt::Key_Return}) { // the menu, and the dialog behind it
        QTest::keyClick(m_window.get(), key);
        expectAllPlain();
    }
}

/// Texts that mean something to somebody, in the shape of names that files may have.
const std::vector<QString> &hostileTexts()
{
    static const std::vector<QString> texts{
        u"<b>bold<br>&amp;&lt;<a href='x'>link"_s,
        u"[link](http:x) **bold** `code` ![x](file:x)"_s,
        u"one\ntwo\r\nthree\rfour\u2028five\u2029six\u000Bseven\u000Ceight"_s,
        u"\n"_s.repeated(200) + u"after two hundred lines"_s,
        u"\t\t\ttabs\t\tand\u0001\u0007\u0008\u001B[31m\u007F\u0085\u009Bcontrols"_s,
        u"\u202Eturned \u202Baround\u2067 for good"_s,
        u"\u05E9\u05DC\u05D5\u05DD \u0645\u0631\u062D\u0628\u0627 12"_s,
        u"\u202A"_s.repeated(70) + u"deep"_s,
        u"e"_s + u"\u0301\u0323"_s.repeated(50) + u"z"_s,
        u"\uFEFF\u200B\u200D\u2060\uFFFC\uFFFD\uFFFE\uFFFF"_s,
        u"\u3000\u00A0 \u2003"_s,
        QString::fromUtf8(
            "\xF0\x9F\x8E\x9E\xEF\xB8\x8F\xF0\x9F\x91\xA9\xE2\x80\x8D\xF0\x9F\x91\xA7"),
        u"W"_s.repeated(240),
        u"%1 %n {0} $x & &x"_s,
    };
    return texts;
}

TEST_F(HostileWindow, showsEveryValueExactlyAsItIs)
{
    for (const QString &text : hostileTexts()) {
        const IngestPlan plan = planOf(text);
        setState(Session::Ready{plan});
        const std::vector<QString> shown = textsOf("QQuickText");
        for (const InspectorRow &row : plan.detection.payload.inspectorRows()) {
            EXPECT_THAT(shown, Contains(row.label));
            EXPECT_THAT(shown, Contains(row.value));
        }
        EXPECT_THAT(shown, Contains(pathText(plan.detection.file.filename())));
        EXPECT_THAT(shown, Contains(pathText(plan.folder.filename()).toUpper()));
    }
}

TEST_F(HostileWindow, showsAFailureInItsOwnWords)
{
    for (const QString &text : hostileTexts()) {
        setState(Session::Error{text});
        // A text that can be selected has one kind of line break, and one of blank.
        QString expected = text;
        expected.replace(u"\r\n"_s, u"\n"_s)
            .replace(QRegularExpression(u"[\r\u2028\u2029]"_s), u"\n"_s)
            .replace(u'\u00A0', u' ');
        EXPECT_THAT(textsOf("QQuickTextEdit"), Contains(expected));
    }
}

TEST_F(HostileWindow, showsAFailureOfEveryFrameOfALargeRollSoon)
{
    const QString line = u"Error: File not found - /rolls/2026/twelve/frame-%1.jpg\n"_s;
    QString text;
    for (int i = 0; i < 20'000; ++i) {
        text += line.arg(i);
    }
    const std::clock_t before = std::clock();
    setState(Session::Error{text});
    m_window->grabWindow();
    QTest::qWait(0);
    const double seconds = double(std::clock() - before) / CLOCKS_PER_SEC;
    RecordProperty("seconds", std::to_string(seconds));
    EXPECT_LT(seconds, 10); // two, and more under sanitizers
}

TEST_F(HostileWindow, keepsItsLayoutWhateverIsShown)
{
    for (const QString &text : hostileTexts()) {
        for (const Session::State &state : statesWith(text)) {
            SCOPED_TRACE(text.left(40).toStdString() + " in state " +
                         std::to_string(state.index()));
            setState(state);
            expectAllInside();
        }
    }
}

TEST_F(HostileWindow, leavesItsOwnWordsWhereTheyAre)
{
    const auto places = [this](const QString &text) {
        setState(Session::Ready{planOf(text)});
        QTest::qWait(0);
        std::map<QString, QPointF> found;
        for (const QQuickItem *item : shownItems()) {
            const QString own = item->property("text").toString();
            if (own == u"IMAGES"_s || own == u"CANCEL"_s || own == u"EMBED METADATA  \u2192"_s ||
                own == u"PAYLOAD"_s || own == u"02 / SLATE DETECTED"_s) {
                found[own] = item->mapToScene({});
            }
        }
        return found;
    };
    const auto expected = places(u"harmless"_s);
    ASSERT_EQ(expected.size(), 5);
    for (const QString &text : {hostileTexts()[0], hostileTexts()[5], hostileTexts()[6],
                                hostileTexts()[7], hostileTexts()[9]}) {
        EXPECT_EQ(places(text), expected) << text.toStdString();
    }
}

TEST_F(HostileWindow, paintsMarkupLetterByLetter)
{
    const QString markup = u"<b>x</b>"_s;
    setState(Session::Ready{planOf(markup)});
    QTest::qWait(0);
    int seen = 0;
    for (const QQuickItem *item : shownItems()) {
        if (item->inherits("QQuickText") && item->property("text") == markup) {
            const QFontMetricsF metrics(item->property("font").value<QFont>());
            EXPECT_NEAR(item->property("contentWidth").toReal(), metrics.horizontalAdvance(markup),
                        2);
            ++seen;
        }
    }
    EXPECT_GE(seen, 8);
}

TEST_F(HostileWindow, loadsNothing)
{
    expectNothingLoaded([this](const QString &text) {
        for (const Session::State &state : statesWith(text)) {
            if (!std::holds_alternative<Session::ManualEntry>(state)) { // it loads its picture
                setState(state);
                m_window->grabWindow();
                QTest::qWait(10);
            }
        }
    });
}

// --- The form ---------------------------------------------------------------------------

class HostileForm : public HostileWindow
{
protected:
    /// The field that holds the notes, in a form that was filled from the last entry.
    QQuickItem *notesOf(const QString &text)
    {
        LastUsedPayloadStore::save(payloadOf(text));
        setState(Session::Idle{});
        setState(Session::ManualEntry{"/rolls/1", std::nullopt});
        QTest::qWait(0);
        for (QQuickItem *field : m_window->findChildren<QQuickItem *>(u"input"_s)) {
            if (field->parentItem()->property("name") == u"NOTES"_s) {
                return field;
            }
        }
        throw std::runtime_error("no field for notes");
    }
    const ManualEntryDraft &draft() const
    {
        const auto *const found = m_window->findChild<ManualEntryDraft *>();
        if (found == nullptr) {
            throw std::runtime_error("no draft");
        }
        return *found;
    }
};

TEST_F(HostileForm, loadsNothing)
{
    expectNothingLoaded([this](const QString &text) {
        notesOf(text);
        m_window->grabWindow();
        QTest::qWait(10);
    });
}

TEST_F(HostileForm, keepsWhatItWasFilledWith)
{
    for (const QString &text : hostileTexts()) {
        const QQuickItem *const notes = notesOf(text);
        EXPECT_EQ(notes->property("text").toString(), text);
        EXPECT_EQ(draft().notes(), text);
        EXPECT_EQ(draft().artist(), text);
        EXPECT_EQ(draft().cameraMake(), text);
    }
}

TEST_F(HostileForm, keepsTheRestOfAValueThatIsEdited)
{
    for (const QString &text : hostileTexts()) {
        QQuickItem *const notes = notesOf(text);
        notes->forceActiveFocus();
        QMetaObject::invokeMethod(notes, "insert", Q_ARG(int, 0), Q_ARG(QString, u"new "_s));
        QTest::keyClick(m_window.get(), Qt::Key_Tab);
        EXPECT_EQ(draft().notes(), u"new "_s + text);
        EXPECT_EQ(draft().artist(), text);
    }
}

} // namespace
} // namespace quillmark
