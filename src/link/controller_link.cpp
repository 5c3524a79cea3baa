#include "link/controller_link.h"

#include <cstdio>
#include <cstdlib>

namespace marlune::link {

namespace {
ControllerLink gLink;
MarluneCom* gCom = nullptr;
} // namespace

ControllerLink& Link() { return gLink; }

void ResetLink() { gLink = ControllerLink{}; }

MarluneCom& Com()
{
    if (!gCom) {
        std::fputs("marlune: no controller library was set before the first exchange\n", stderr);
        std::abort();
    }
    return *gCom;
}

void SetCom(MarluneCom* com) { gCom = com; }

} // namespace marlune::link
