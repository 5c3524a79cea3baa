#pragma once

#include <QApplication>
#include <QTimer>

#include <cstring>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "forms/form.h"
#include "forms/platform.h"
#include "link/controller_link.h"
#include "link/marlune_com.h"
#include "qt/qt_platform.h"

namespace marlune::qt::test {

// A controller that answers from a table and keeps every request, so that a test can see
// what went over the wire.
class ScriptedCom final : public link::MarluneCom {
public:
    std::int32_t open(std::int32_t, std::int32_t, char*) override { return 7; }
    std::int32_t close(std::int32_t, std::int32_t) override { return 0; }
    std::int32_t sendRecv(std::int32_t, std::int32_t, const char* request, char* reply) override
    {
        std::string command(request);
        if (!command.empty() && command.back() == '\r')
            command.pop_back();
        requests.push_back(command);
        const auto it = replies.find(command);
        const std::string answer = it == replies.end() ? std::string("?") : it->second;
        std::memcpy(reply, answer.c_str(), answer.size() + 1);
        return 1;
    }

    std::map<std::string, std::string> replies;
    std::vector<std::string> requests;
};

// A Qt platform and a scripted controller set up as the program's, for one test.
class QtDesk {
public:
    QtDesk()
    {
        forms::SetPlatform(&platform);
        link::SetCom(&com);
    }
    ~QtDesk()
    {
        link::SetCom(nullptr);
        forms::SetPlatform(nullptr);
    }
    QtDesk(const QtDesk&) = delete;
    QtDesk& operator=(const QtDesk&) = delete;

    QtPlatform platform;
    ScriptedCom com;
};

// Runs `steps` from inside the modal showing of `form` (in its nested loop), then makes sure
// the showing ends, so that a failing step cannot hang the test.
inline void WhileModal(forms::Form& form, forms::Form* owner, const std::function<void()>& steps)
{
    QTimer::singleShot(0, [&form, steps] {
        steps();
        form.unload();
    });
    forms::ShowModal(form, owner);
}

// Lets posted events (deferred deletes, layout, paint) run.
inline void Settle()
{
    QApplication::processEvents();
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

} // namespace marlune::qt::test
