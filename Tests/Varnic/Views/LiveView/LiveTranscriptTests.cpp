#include "Varnic/Views/LiveView/LiveTranscript.h"

#include "Varnic/EventLoop.h"
#include "Varnic/Views/LiveView/FreshWords.h"

#include <QSignalSpy>
#include <gmock/gmock.h>

namespace varnic {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using Unfinished = std::map<Speaker, std::vector<Segment>>;

Segment you(double start, std::string text) {
    return Segment(Speaker::you, start, start + 1, std::move(text));
}

Segment them(double start, std::string text) {
    return Segment(Speaker::them, start, start + 1, std::move(text));
}

class LiveTranscriptTests : public testing::Test {
protected:
    [[nodiscard]] QVariant at(int row, LiveTranscript::Role role) const {
        return transcript.data(transcript.index(row), role);
    }

    [[nodiscard]] QStringList fresh(int row) const {
        QStringList words;
        for (const auto& [from, to] : at(row, LiveTranscript::fresh).value<FreshInk*>()->words()) {
            words += at(row, LiveTranscript::words).toString().mid(from, to - from);
        }
        return words;
    }

    LiveTranscript transcript;
};

TEST(FreshWords, onlyWordsThatTheReaderHasNotSeen) {
    struct Case {
        QString before;
        QString after;
        QString fresh;
    };

    const std::vector<Case> cases{
        {"", "so we", "so we"},
        {"so we", "so we begin", "begin"},
        {"so we begin", "so we begin", ""},
        {"so be again today", "so we begin today", "we begin"},
        {"we begin", "so we begin now", "so now"},
        {"so we begin", "so we", ""},
        {"so so", "so so so", "so"},
    };
    for (const Case& one : cases) {
        const QStringList after = one.after.split(' ', Qt::SkipEmptyParts);
        const auto isFresh = freshWords(one.before.split(' ', Qt::SkipEmptyParts), after);
        QStringList found;
        for (qsizetype i = 0; i < after.size(); ++i) {
            if (isFresh[static_cast<std::size_t>(i)]) {
                found += after[i];
            }
        }
        EXPECT_EQ(found.join(' '), one.fresh) << one.before.toStdString() << " → " << one.after.toStdString();
    }
    EXPECT_EQ(wordKey(u"Don’t,"), wordKey(u"dont"));
    EXPECT_EQ(wordKey(u"—"), u"—");
}

TEST_F(LiveTranscriptTests, show_aRowThatGrowsIsChangedInPlaceAndOnlyItsNewWordsAreFresh) {
    transcript.show({}, Unfinished{{Speaker::you, {you(1, "of course")}}});
    EXPECT_THAT(fresh(0), ElementsAre("of", "course"));
    EXPECT_EQ(at(0, LiveTranscript::firm), 0);
    const QVariant ink = at(0, LiveTranscript::fresh);
    QSignalSpy changes(&transcript, &QAbstractItemModel::dataChanged);
    QSignalSpy rows(&transcript, &QAbstractItemModel::rowsInserted);

    transcript.show({}, Unfinished{{Speaker::you, {you(1, "Of course, first")}}});
    EXPECT_THAT(fresh(0), ElementsAre("first"));
    // Final now, with nothing new in it.
    transcript.show({you(1, "Of course. First.")}, Unfinished{{Speaker::you, {}}});
    EXPECT_THAT(fresh(0), IsEmpty());
    EXPECT_EQ(at(0, LiveTranscript::firm), 17);
    // The turn goes on with an unfinished line.
    transcript.show({you(1, "Of course. First.")}, Unfinished{{Speaker::you, {you(3, "the onboarding")}}});
    EXPECT_EQ(at(0, LiveTranscript::words), "Of course. First. the onboarding");
    EXPECT_THAT(fresh(0), ElementsAre("the", "onboarding"));
    EXPECT_EQ(at(0, LiveTranscript::firm), 17);
    EXPECT_EQ(at(0, LiveTranscript::fresh), ink);
    EXPECT_EQ(changes.size(), 3);
    EXPECT_TRUE(rows.isEmpty());
}

TEST_F(LiveTranscriptTests, show_aTurnOfTheOtherSideIsARowOfItsOwn) {
    transcript.show({them(0, "Good morning."), you(2, "Hello.")}, {});
    QSignalSpy changes(&transcript, &QAbstractItemModel::dataChanged);
    QSignalSpy counts(&transcript, &LiveTranscript::countChanged);
    transcript.show({them(0, "Good morning."), you(2, "Hello."), them(65, "So.")}, {});
    EXPECT_EQ(transcript.count(), 3);
    EXPECT_EQ(at(2, LiveTranscript::name), "Them");
    EXPECT_EQ(at(2, LiveTranscript::stamp), "1:05");
    EXPECT_EQ(at(2, LiveTranscript::spoken), "Them, 1:05: So.");
    EXPECT_TRUE(changes.isEmpty());
    EXPECT_EQ(counts.size(), 1);
    // One that comes late, between others.
    transcript.show({them(0, "Good morning."), them(0.5, "Sam."), you(2, "Hello."), you(30, "Yes."), them(65, "So.")},
                    {});
    ASSERT_EQ(changes.size(), 1) << "of the turn that goes on alone";
    EXPECT_EQ(changes.front()[1].toModelIndex().row(), 0);
    EXPECT_EQ(transcript.count(), 4);
    EXPECT_EQ(at(0, LiveTranscript::words), "Good morning. Sam.");
    EXPECT_EQ(at(2, LiveTranscript::words), "Yes.");
    transcript.show({}, {});
    EXPECT_EQ(transcript.count(), 0);
}

TEST_F(LiveTranscriptTests, show_whatTheMicrophoneOverhears_isTheirsAlone) {
    transcript.show({you(0, "Good morning, all.")}, {});
    EXPECT_EQ(transcript.count(), 1);
    transcript.show({you(0.1, "Good morning, all."), you(3, "Hello.")},
                    {{Speaker::them, {them(0, "Good morning, all")}}});
    ASSERT_EQ(transcript.count(), 2);
    EXPECT_EQ(at(0, LiveTranscript::name), "Them");
    EXPECT_EQ(at(1, LiveTranscript::words), "Hello.");
    // The same words at another time are an answer.
    transcript.show({them(0, "Good morning, all."), you(2, "Good morning, all.")}, {});
    EXPECT_EQ(transcript.count(), 2);
}

TEST_F(LiveTranscriptTests, freshWordsDry) {
    transcript.show({them(0, "Good morning.")}, {});
    auto* ink = at(0, LiveTranscript::fresh).value<FreshInk*>();
    EXPECT_EQ(ink->words().front().duration(), 300);
    EXPECT_TRUE(waitUntil([&] { return ink->words().empty(); }));
}

} // namespace
} // namespace varnic
