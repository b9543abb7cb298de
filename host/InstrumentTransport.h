#pragma once

#include <atomic>

#include "host/ByteLink.h"
#include "host/Transports.h"

namespace host {

/// The dialogue with an instrument over any link: commands end in LF, answers in LF or CRLF, text is Latin-1 on the
/// wire. One deadline holds for a whole operation. A link that was lost is opened again by the next operation, which
/// tries that for as long as the time-out is and then has its own time: a shorter outage is bridged, a longer one ends
/// in NoConnection. So does a command on which the link is lost again and again. When the user asks to stop, the
/// operation ends quietly with an empty answer. After a failure or a stop the link is brought back into step before the
/// next command, so that a late answer is never taken for the answer to another query.
class InstrumentTransport : public platform::Transport {
  public:
    /// Bytes of the longest answer.
    static constexpr std::size_t AnswerLimit = std::size_t{1} << 20;

    /// `source` is the ProgID, for errors.
    InstrumentTransport(std::string_view source, std::unique_ptr<ByteLink> link,
                        std::shared_ptr<platform::SettingsNode> settings, TransportServices services);
    ~InstrumentTransport() override { link_->Close(); }

    float Timeout() override { return timeout_; }
    /// Raises 5 for a negative time.
    void SetTimeout(float seconds) override;

    void SendReceive(std::string_view command, std::string* response) override;
    void WriteString(std::string_view command) override { SendReceive(command, nullptr); }
    std::string ReadString(std::optional<std::string_view> command) override;
    /// Without a command it goes on with the answer that the last read left off. Empty when the user asked to stop.
    std::vector<std::uint8_t> ReadBlock(std::int16_t count, std::optional<std::string_view> command) override;
    void WriteBlock(std::int16_t count, std::span<const std::uint8_t> data,
                    std::optional<std::string_view> command) override;

    void SetName(std::string_view name) override { name_ = name; }
    std::shared_ptr<platform::SettingsNode> Settings() override { return settings_; }
    void Connect(bool connect) override;
    /// True from a successful Connect until it is undone: a link that was lost meanwhile is opened again by the next
    /// command.
    bool IsConnected() override { return connected_; }

  protected:
    /// Raises that failure of a call that was not begun, and logs it.
    [[noreturn]] void Refuse(platform::TransportError code, const std::string& text) const;

  private:
    struct Operation {
        std::string_view Expected;
        Patience Time;
        std::string Sent = {};
    };

    template <class Body>
    void Run(Operation operation, Body body);
    Operation Begin(std::string_view expected) const;
    LinkFailure NoConnection(const std::string& reason) const;
    template <class Done, class Step>
    static void Repeat(Operation& operation, const LinkFailure& timedOut, Done done, Step step);

    void Send(Operation& operation, std::string bytes);
    void BringIntoStep(Operation& operation);
    void Reopen(Operation& operation);
    void DiscardStaleBytes(Operation& operation);
    std::string ReadLine(Operation& operation);
    void AwaitBytes(Operation& operation, std::size_t count);
    void RefuseReadOutOfStep() const;
    bool ReadSome(Patience::Milliseconds time);
    bool SettleLineEnd();
    bool DropLineEnd();

    [[noreturn]] void Raise(const Operation& operation, LinkFailure failure);
    void Note(std::string_view text, std::string_view data) const;

    std::string source_;
    std::unique_ptr<ByteLink> link_;
    std::shared_ptr<platform::SettingsNode> settings_;
    TransportServices services_;
    std::string name_;
    float timeout_ = 5.0F;
    bool connected_ = false;
    std::atomic<bool> running_ = false;
    bool outOfStep_ = false;      ///< bytes of an abandoned answer may still arrive
    bool blockWasLast_ = false;   ///< the line end of a block may still be to come
    bool lineEndIsOwed_ = false;  ///< as above, and a command has been sent since
    std::string received_;        ///< bytes of the present answer that nobody has asked for yet
    int losses_ = 0;              ///< of the link, since the command that it was lost on last went through
    std::string lostOn_;          ///< that command
};

}  // namespace host
