#include "sweep/SweepFrames.h"

#include <algorithm>

#include "sweep/SweepNames.h"

namespace storage::javaprovider::test {

namespace {

using enum FrameAllowance::When;

const std::vector<FrameAllowance>& allowances() {
    static const std::vector<FrameAllowance> table = {
        // Construction searches four classes.
        {"make", Always, "FindClass java/lang/Class", 1},
        {"make", Always, "CallObjectMethod getClassLoader", 1},
        {"make", Always, "FindClass java/lang/ClassLoader", 8},
        {"make", Always, "NewStringUTF com.corvallen.storage.provider.", 4},
        {"make", Always, "CallObjectMethod loadClass", 4},
        {"make", Failing, "FindClass com/corvallen/storage/provider/", 4},
        // What is made by its class goes to the provider, which refers to it anew.
        {"make by", Always, std::string("FindClass ") + SweptBackEnd, 1},
        {"make by", Always, std::string("NewObject ") + SweptBackEnd, 1},
        {"refuse", Always, std::string("FindClass ") + ThrowingBackEnd, 1},
        {"refuse", Always, "ExceptionOccurred", 1},
        {"refuse", Always, "GetObjectClass of ExceptionOccurred", 1},
        {"refuse", Always, "CallObjectMethod toString", 1},
        // The first error of the back end in a process has two methods looked up.
        {"the first error", Always, "GetObjectClass of ExceptionOccurred", 2},
        {"extended attributes", Always, "FindClass com/corvallen/storage/provider/ExtendedAttribute", 1},
        {"configure", Always, "FindClass java/util/HashMap", 1},
        // The publisher is kept as the reference that it was made as.
        {"start", Always, "NewObject com/corvallen/storage/provider/NativePublisher", 1},
        {"start", Failing, "NewLocalRef", 1},
        {"start", Failing, "NewObject com/corvallen/storage/provider/StorageURI", 1},
        {"stop", Failing, "NewObject com/corvallen/storage/provider/StorageURI", 1},
        {"read", Failing, "NewDirectByteBuffer", 1},
        {"write", Failing, "NewDirectByteBuffer", 1},
        {"end in", Failing, "NewDirectByteBuffer", 1},
        // The search for the class of what was thrown.
        {"", Failing, "FindClass java/lang/Class", 1},
        {"", Failing, "FindClass java/lang/ClassLoader", 2},
        {"", Failing, "NewStringUTF com/corvallen/storage/provider/ProviderException", 1},
        {"", Failing, "CallObjectMethod getParent", 1},
        {"", Described, "ExceptionOccurred", 1},
        {"", Described, "GetObjectClass of ExceptionOccurred", 1},
        {"", Described, "CallObjectMethod toString", 1},
    };
    return table;
}

bool isDescription(const SweepOutcome& outcome) {
    return outcome.ending == Ending::InternalError && !outcome.text.starts_with("ProviderCallback threw");
}

bool applies(const FrameAllowance& allowance, const std::string& operation, const SweepOutcome& outcome, bool failing) {
    if (!operation.starts_with(allowance.operation)) {
        return false;
    }
    return allowance.when == Always || (allowance.when == Failing && failing) ||
           (allowance.when == Described && isDescription(outcome));
}

}  // namespace

std::vector<std::string> FrameTally::surplus(const std::string& operation, const SweepOutcome& outcome, bool failing,
                                             const std::vector<std::string>& left) {
    const auto& table = allowances();
    m_used.resize(table.size());
    const bool inTrouble = failing || outcome.ending != Ending::Returns;
    std::vector<std::size_t> used(table.size());
    std::vector<std::string> surplus;
    for (const std::string& call : left) {
        std::size_t row = 0;
        while (row < table.size() && !(used[row] < table[row].most && call.starts_with(table[row].call) &&
                                       applies(table[row], operation, outcome, inTrouble))) {
            ++row;
        }
        if (row == table.size()) {
            surplus.push_back(call);
        } else {
            m_used[row] = std::max(m_used[row], ++used[row]);
        }
    }
    return surplus;
}

std::vector<std::string> FrameTally::tooGenerous() const {
    std::vector<std::string> rows;
    for (std::size_t row = 0; row < m_used.size(); ++row) {
        const FrameAllowance& allowance = allowances()[row];
        if (m_used[row] < allowance.most) {
            rows.push_back("\"" + allowance.operation + "\" / " + allowance.call + ": " + std::to_string(m_used[row]));
        }
    }
    return rows;
}

}  // namespace storage::javaprovider::test
