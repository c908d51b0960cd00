// sessionmanager: a session manager for one program. Prints where it listens, for SESSION_MANAGER;
// the signal USR1 logs out. Ends when the program has left the session.

#include <X11/ICE/ICElib.h>
#include <X11/SM/SMlib.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <poll.h>
#include <vector>

namespace
{

volatile std::sig_atomic_t logOut = 0;
SmsConn client = nullptr;

Status registerClient(SmsConn connection, SmPointer, char *)
{
    client = connection;
    char *const name = SmsGenerateClientID(connection);
    const Status answered = SmsRegisterClientReply(connection, name);
    std::free(name);
    return answered;
}

/// Sets the answers that end a session; the others do nothing.
Status accept(SmsConn, SmPointer, unsigned long *mask, SmsCallbacks *answers, char **)
{
    *mask = SmsRegisterClientProcMask | SmsInteractRequestProcMask | SmsInteractDoneProcMask |
            SmsSaveYourselfRequestProcMask | SmsSaveYourselfP2RequestProcMask |
            SmsSaveYourselfDoneProcMask | SmsCloseConnectionProcMask | SmsSetPropertiesProcMask |
            SmsDeletePropertiesProcMask | SmsGetPropertiesProcMask;
    *answers = {};
    answers->register_client.callback = registerClient;
    answers->interact_request.callback = [](SmsConn connection, SmPointer, int) {
        SmsInteract(connection);
    };
    answers->interact_done.callback = [](SmsConn, SmPointer, Bool) {};
    answers->save_yourself_request.callback = [](SmsConn, SmPointer, int, Bool, int, Bool, Bool) {};
    answers->save_yourself_phase2_request.callback = [](SmsConn connection, SmPointer) {
        SmsSaveYourselfPhase2(connection);
    };
    answers->save_yourself_done.callback = [](SmsConn connection, SmPointer, Bool) {
        SmsDie(connection);
    };
    answers->close_connection.callback = [](SmsConn, SmPointer, int, char **) { std::exit(0); };
    answers->set_properties.callback = [](SmsConn, SmPointer, int count, SmProp **properties) {
        for (int i = 0; i < count; ++i)
            SmFreeProperty(properties[i]);
        std::free(properties);
    };
    answers->delete_properties.callback = [](SmsConn, SmPointer, int, char **) {};
    answers->get_properties.callback = [](SmsConn, SmPointer) {};
    return True;
}

Bool anybody(char *)
{
    return True;
}

} // namespace

int main()
{
    char error[256] = "";
    int count = 0;
    IceListenObj *listeners = nullptr;
    if (!SmsInitialize("test", "1", accept, nullptr, anybody, sizeof error, error) ||
        !IceListenForConnections(&count, &listeners, sizeof error, error)) {
        std::fprintf(stderr, "%s\n", error);
        return 1;
    }
    std::signal(SIGUSR1, [](int) { logOut = 1; });
    std::vector<pollfd> ends;
    for (int i = 0; i < count; ++i) {
        IceSetHostBasedAuthProc(listeners[i], anybody);
        ends.push_back({IceGetListenConnectionNumber(listeners[i]), POLLIN, 0});
    }
    std::vector<IceConn> connections;
    std::printf("%s\n", IceComposeNetworkIdList(count, listeners));
    std::fflush(stdout);
    for (;;) {
        (void)poll(ends.data(), ends.size(), -1);
        if (logOut && client) {
            logOut = 0;
            SmsSaveYourself(client, SmSaveBoth, True, SmInteractStyleAny, False);
            continue;
        }
        for (std::size_t i = 0; i < ends.size(); ++i) {
            if (ends[i].revents == 0)
                continue;
            if (i >= std::size_t(count)) {
                IceProcessMessages(connections[i - std::size_t(count)], nullptr, nullptr);
                continue;
            }
            IceAcceptStatus status{};
            IceConn connection = IceAcceptConnection(listeners[i], &status);
            if (!connection)
                continue;
            connections.push_back(connection);
            ends.push_back({IceConnectionNumber(connection), POLLIN, 0});
        }
    }
}
