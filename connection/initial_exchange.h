#pragma once

class DeviceLink;

/// The three read-back commands and which of their answers are still awaited.
class InitialExchange
{
public:
    explicit InitialExchange(DeviceLink &link) : link_(link) {}

    /// "//rl": the configuration listing.
    void sendConfigurationQuery();
    /// "//??": the status text.
    void sendStatusQuery();
    /// "//BP": the layout.
    void sendBpQuery();
    /// All three in this order, without a delay between them.
    void sendAll();

    bool isAwaitingRlReply() const { return awaitingRlReply; }
    bool isAwaitingStatusReply() const { return awaitingStatusReply; }
    bool isAwaitingBpReply() const { return awaitingBpReply; }
    void rlReplyTaken() { awaitingRlReply = false; }
    void statusReplyTaken() { awaitingStatusReply = false; }
    void bpReplyTaken() { awaitingBpReply = false; }

private:
    DeviceLink &link_;
    bool awaitingRlReply = false;
    bool awaitingStatusReply = false;
    bool awaitingBpReply = false;
};
