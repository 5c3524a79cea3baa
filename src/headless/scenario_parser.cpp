#include "headless/scenario_parser.h"

namespace marlune::headless {

namespace {

// Repeat counts beyond this are typing errors rather than scenarios.
constexpr std::int64_t kLongestRepeat = 1000000;

class Parser final {
public:
    ScenarioFile parse(std::string_view text)
    {
        int lineNumber = 0;
        while (!text.empty()) {
            const std::size_t end = text.find('\n');
            std::string_view line = text.substr(0, end);
            text = end == std::string_view::npos ? std::string_view() : text.substr(end + 1);
            if (line.ends_with('\r'))
                line.remove_suffix(1);
            parseLine(++lineNumber, line);
        }
        closeScenario();
        if (file_.scenarios.empty() && !file_.error)
            file_.error = ParseError{1, "the file holds no scenario"};
        return std::move(file_);
    }

private:
    void parseLine(int line, std::string_view text)
    {
        LexedLine lexed = LexLine(text);
        if (!lexed.error.empty()) {
            fail(line, lexed.error);
            return;
        }
        if (lexed.words.empty())
            return;
        Statement statement{line, std::move(lexed.words), 0, {}};
        const std::string& name = statement.name();
        const std::size_t arguments = statement.words.size() - 1;
        if (name == "scenario") {
            closeScenario();
            file_.scenarios.push_back({arguments == 1 ? statement.words[1].text : std::string(), line, {}, {}});
            current_ = &file_.scenarios.back();
            if (arguments != 1)
                fail(line, "scenario needs one title");
            return;
        }
        if (!current_) {
            fail(line, "a statement before the first scenario");
            return;
        }
        if (current_->error)
            return;
        if (statement.isRepeat()) {
            const auto count = arguments == 1 ? ParseInteger(statement.words[1].text) : std::nullopt;
            if (!count || *count < 0 || *count > kLongestRepeat) {
                fail(line, "repeat needs a count from 0 to " + std::to_string(kLongestRepeat));
                return;
            }
            statement.repeatCount = static_cast<int>(*count);
            body().push_back(std::move(statement));
            openRepeats_.push_back(&body().back());
            return;
        }
        if (name == "end-repeat") {
            if (arguments != 0)
                fail(line, "end-repeat takes nothing");
            else if (openRepeats_.empty())
                fail(line, "end-repeat without repeat");
            else
                openRepeats_.pop_back();
            return;
        }
        body().push_back(std::move(statement));
    }

    std::vector<Statement>& body() { return openRepeats_.empty() ? current_->statements : openRepeats_.back()->body; }

    void closeScenario()
    {
        if (current_ && !openRepeats_.empty())
            fail(openRepeats_.back()->line, "repeat without end-repeat");
        openRepeats_.clear();
    }

    void fail(int line, std::string message)
    {
        std::optional<ParseError>& error = current_ ? current_->error : file_.error;
        if (!error)
            error = ParseError{line, std::move(message)};
    }

    ScenarioFile file_;
    Scenario* current_ = nullptr;
    // Each points into the body that encloses it, which grows no more while it is open.
    std::vector<Statement*> openRepeats_;
};

} // namespace

ScenarioFile ParseScenarios(std::string_view text) { return Parser().parse(text); }

} // namespace marlune::headless
