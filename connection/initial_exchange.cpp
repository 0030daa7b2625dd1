#include "connection/initial_exchange.h"

#include "connection/device_link.h"
#include "device/read_back_commands.h"

void InitialExchange::sendConfigurationQuery()
{
    awaitingRlReply = true;
    link_.forwardCommand(readConfigurationCommand);
}

void InitialExchange::sendStatusQuery()
{
    awaitingStatusReply = true;
    link_.forwardCommand(readStatusCommand);
}

void InitialExchange::sendBpQuery()
{
    awaitingBpReply = true;
    link_.forwardCommand(readLayoutCommand);
}

void InitialExchange::sendAll()
{
    sendConfigurationQuery();
    sendStatusQuery();
    sendBpQuery();
}
