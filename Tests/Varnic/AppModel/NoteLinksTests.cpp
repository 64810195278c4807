#include "Varnic/AppModel/CallFlows.h"
#include "VarnicCore/Audio/SoundFiles.h"

#include <gmock/gmock.h>

namespace varnic {
namespace {

using testing::HasSubstr;
using testing::SizeIs;

class NoteLinksTests : public CallFlowsTests {
protected:
    NoteLinksTests() {
        model->desktop.copyText = [this](const std::string& text) { copied = text; };
    }

    std::string copied;
};

TEST_F(NoteLinksTests, copiedLink_leadsToTheNoteAndItsMoment) {
    const Uuid call = *QCoro::waitFor(record());
    const Uuid note = model->newNote("Mine");
    model->copyLink(call, 0.5);
    const std::string link = copied;
    model->copyLink(note);
    for (const auto& [address, target, time] :
         {std::tuple(link, call, std::optional(0.0)), std::tuple(copied, note, std::optional<double>()),
          std::tuple(link.substr(0, link.find('?')), call, std::optional<double>()),
          std::tuple(link.substr(0, link.find('?')) + "?t=999999999999", call,
                     std::optional(model->note(call)->call->duration)),
          std::tuple(copied + "?t=1", note, std::optional<double>())}) {
        model->section = LibrarySection::calls;
        model->query = "something";
        model->seek = std::nullopt;
        model->openAddress(address);
        EXPECT_EQ(model->selection.value(), target) << address;
        EXPECT_EQ(model->seek.value().has_value() ? std::optional(model->seek.value()->time) : std::nullopt, time);
        EXPECT_TRUE(model->isVisible(*model->note(target))) << address;
        EXPECT_EQ(model->query.value(), "") << address;
    }
}

TEST_F(NoteLinksTests, wrongAddress_isToldAndChangesNothing) {
    const Uuid note = model->newNote("Mine");
    model->query = "something";
    for (const auto& [address, told] : std::vector<std::pair<std::string, std::string>>{
             {"varnic:nothing", "“varnic:nothing” is no address of a note."},
             {"varnic:" + std::string(5000, 'x'), "xxx” is no address"},
             {"varnic:6E0B7B39-6C0A-4E0C-9C53-0A6A1B0D7F11", "isn’t in the library"}}) {
        model->openAddress(address);
        EXPECT_THAT(model->toast.value()->text, HasSubstr(told));
        EXPECT_LT(model->toast.value()->text.size(), 120U);
        EXPECT_EQ(model->selection.value(), note);
        EXPECT_EQ(model->query.value(), "something");
    }
}

TEST_F(NoteLinksTests, markdownAmongRecordings_becomesANote) {
    const SoundFiles files;
    QCoro::waitFor(
        model->importFiles({files.write("Ideas.MD", "- a\n    - b\n"), files.tone("A.wav", 1),
                            files.write("Plan.markdown", "# The plan\n\nText"), files.write("broken.md", "\xFF\xFE")}));
    EXPECT_THAT(model->toast.value()->text, HasSubstr("“broken.md” isn’t UTF-8 text."));
    model->flushSaves();
    std::vector<std::string> titles;
    for (const Note& note : model.stored()) {
        if (!note.isCall()) {
            titles.push_back(note.title);
        }
    }
    EXPECT_THAT(model.stored(), SizeIs(3));
    EXPECT_THAT(titles, testing::UnorderedElementsAre("Ideas", "The plan"));
    QCoro::waitFor(model->importFiles({files.path("Ideas.MD")}));
    EXPECT_EQ(model->toast.value()->text, "Simplified: 1 item of a list in a list is an item of one list now.");
}

} // namespace
} // namespace varnic
