// Test helper: one peer process of the link tests. It runs the commands of its command line in
// order against the region named by its first argument ("-" keeps the default name) and prints one
// line per command, mostly the result code:
//   start | shutdown | count | name | wait (reads one line end from stdin)
//   create SIZE KEYLEN | attach ID SIZE | detach ID | key KEYLEN SIZE | get ID SIZE
//   conparent | conattach ID | flag (sets successful completion) | await (until it is set)
//   loop state|progress N (sets its field N times, checking that no update gets lost) | report
#include <cstdlib>
#include <iostream>
#include <string>
#include <vector>

#include "GeneralConLink.h"

using Dorva::GeneralConLink;
using Dorva::LinkManager;

namespace {

GeneralConLink* s_link = nullptr;

// Sets one field to 1..n while the other process sets the other field. A setter that wrote back a
// stale copy of the record would undo the other side's latest change: its own field must still
// hold the last value before each set and the new one after it, and the other field must never go
// backwards.
std::string Loop(bool blnState, int n) {
    double lastOther = -1.0;
    for (int i = 1; i <= 2 * n; ++i) {
        const int value = i / 2;
        std::int32_t state = 0;
        double progress = 0.0;
        const LinkManager::Result set = i % 2 == 1 ? LinkManager::SUCCESS
                                        : blnState ? s_link->SetCompletionState(value)
                                                   : s_link->SetProgress(value);
        if (set != LinkManager::SUCCESS || s_link->GetCompletionState(state) != set ||
            s_link->GetProgress(progress) != set)
            return "failed at " + std::to_string(value);
        const double own = blnState ? state : progress, other = blnState ? progress : state;
        if (own != value || other < lastOther) return "lost update at " + std::to_string(value);
        lastOther = other;
    }
    return "ok";
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2) return 2;
    if (std::string(argv[1]) != "-") LinkManager::SetRegionName(argv[1]);
    std::vector<std::string> args(argv + 2, argv + argc);
    char data[4097] = {};
    unsigned int id = 0;
    std::string key;
    for (size_t i = 0; i < args.size(); ++i) {
        const std::string& command = args[i];
        auto next = [&]() { return std::atoll(args.at(++i).c_str()); };
        if (command == "start") {
            std::cout << LinkManager::Startup();
        } else if (command == "shutdown") {
            LinkManager::Shutdown();
            std::cout << "down";
        } else if (command == "count") {
            std::cout << LinkManager::GetNumAttachedManagers();
        } else if (command == "name") {
            std::cout << LinkManager::GetRegionName();
        } else if (command == "wait") {
            std::cout << "waiting" << std::endl;
            std::cin.get();  // the line end the test sends
            std::cout << "go";
        } else if (command == "create") {
            const long long size = next();
            std::cout << LinkManager::CreateLink(size, data, std::string(next(), 'k'), id) << " "
                      << id;
        } else if (command == "attach") {
            const long long link = next();
            std::cout << LinkManager::AttachToLink(link, key, next(), data);
        } else if (command == "detach") {
            std::cout << LinkManager::DetachFromLink(next());
        } else if (command == "key") {
            key.assign(next(), 'k');
            std::cout << LinkManager::AttachToLink(key, id, next(), data) << " " << id;
        } else if (command == "get") {
            const long long link = next();
            std::cout << LinkManager::GetLinkData(link, next(), data);
        } else if (command == "conparent" || command == "conattach") {
            LinkManager::Result result;
            delete s_link;
            s_link = command == "conparent" ? new GeneralConLink(result)
                                            : new GeneralConLink(next(), result);
            std::cout << result << " " << s_link->GetLinkId();
        } else if (command == "flag") {
            std::cout << s_link->SetSuccessfulCompletion(true);
        } else if (command == "await") {
            bool blnSet = false;
            while (s_link->GetSuccessfulCompletion(blnSet) == LinkManager::SUCCESS && !blnSet) {
            }
            std::cout << "flagged";
        } else if (command == "loop") {
            const bool blnState = args.at(++i) == "state";
            std::cout << Loop(blnState, next());
        } else if (command == "report") {
            bool blnStop = true, blnSuccess = false;
            std::int32_t state = -1;
            double progress = -1.0;
            s_link->GetStop(blnStop), s_link->GetSuccessfulCompletion(blnSuccess);
            s_link->GetCompletionState(state), s_link->GetProgress(progress);
            std::cout << blnStop << " " << blnSuccess << " " << state << " " << progress;
        } else {
            std::cout << "unknown command " << command;
        }
        std::cout << std::endl;
    }
    delete s_link;
    return 0;
}
