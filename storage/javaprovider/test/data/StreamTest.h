#pragma once

#include <jni.h>

#include <memory>
#include <string>
#include <vector>

#include "ProviderChannelByteStream.h"
#include "data/DataTest.h"

namespace storage::javaprovider::test {

/// A test of streams over channels in memory, which note every call in the script.
class StreamTest : public DataTest {
protected:
    void SetUp() override;
    void TearDown() override;

    /// A channel over the text; a local reference that the recorder knows nothing of.
    [[nodiscard]] jobject channelOver(const std::string& text) const;
    /// A stream over a channel over the text. Nothing of its making is left in the recorder.
    [[nodiscard]] std::unique_ptr<ProviderChannelByteStream> streamOver(const std::string& text);

    /// Tells all channels something; see the Java class.
    void tell(const std::string& what, const std::vector<std::string>& texts) const;
    /// The next call of the channel's method throws.
    void failNext(const std::string& method, const std::string& kind, const std::string& text) const {
        tell("failNext", {method, kind, text});
    }
};

}  // namespace storage::javaprovider::test
