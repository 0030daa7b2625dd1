#pragma once

class DeviceLink;

/// The three read-back questions. Each notes with the connection that its answer is awaited, then
/// goes out.
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
    /// All three in this order, without a delay between them; from here on the connection watches
    /// for an answer.
    void sendAll();

private:
    DeviceLink &link_;
};
