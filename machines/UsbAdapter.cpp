// A USB device that an emulated computer is connected to by the USB redirection protocol.
// Usage: usb-adapter SOCKET CONTROL-SOCKET
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>
#include <usbredirparser.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <mutex>
#include <sstream>

#include "Control.h"
#include "TinyUsb.h"

namespace {

using namespace tarnwell;

class UsbAdapter {
  public:
    explicit UsbAdapter(int connection) : connection_(connection) {
        parser_->priv = this;
        parser_->log_func = [](void*, int level, const char* text) {
            if (level <= usbredirparser_warning)
                std::fprintf(stderr, "%s\n", text);
        };
        parser_->read_func = [](void* self, std::uint8_t* data, int count) {
            return Self(self).Pass(read, data, count);
        };
        parser_->write_func = [](void* self, std::uint8_t* data, int count) {
            return Self(self).Pass(write, data, count);
        };
        parser_->reset_func = [](void*) {};
        parser_->cancel_data_packet_func = [](void*, std::uint64_t) {};
        parser_->set_configuration_func = [](void* self, std::uint64_t id,
                                             usb_redir_set_configuration_header* wanted) {
            usb_redir_configuration_status_header status{usb_redir_success, wanted->configuration};
            usbredirparser_send_configuration_status(Self(self).parser_, id, &status);
        };
        parser_->set_alt_setting_func = [](void* self, std::uint64_t id,
                                           usb_redir_set_alt_setting_header* wanted) {
            usb_redir_alt_setting_status_header status{usb_redir_success, wanted->interface,
                                                       wanted->alt};
            usbredirparser_send_alt_setting_status(Self(self).parser_, id, &status);
        };
        parser_->control_packet_func = [](void* self, std::uint64_t id,
                                          usb_redir_control_packet_header* header,
                                          std::uint8_t* data, int length) {
            Self(self).Answer(id, *header, {data, static_cast<std::size_t>(length)});
            usbredirparser_free_packet_data(Self(self).parser_, data);
        };
        std::array<std::uint32_t, USB_REDIR_CAPS_SIZE> can{};
        for (const int what :
             {usb_redir_cap_connect_device_version, usb_redir_cap_64bits_ids,
              usb_redir_cap_ep_info_max_packet_size, usb_redir_cap_32bits_bulk_length})
            usbredirparser_caps_set_cap(can.data(), what);
        usbredirparser_init(parser_, "tarnwell", can.data(), USB_REDIR_CAPS_SIZE,
                            usbredirparser_fl_usb_host);
        usbredirparser_do_write(parser_);
    }

    /// Until the other side is gone.
    void Serve() {
        for (pollfd waited{connection_, POLLIN, 0}; poll(&waited, 1, -1) > 0;) {
            const std::lock_guard lock(mutex_);
            if (usbredirparser_do_read(parser_) == usbredirparser_read_io_error)
                return;
            usbredirparser_do_write(parser_);
        }
    }

    /// "plug LONGEST", "unplug", "image CHIP"; or "unplug-behind CYCLES COUNT": so
    /// many requests of the driver behind so many more write cycles.
    std::string Control(const std::string& line) {
        const std::lock_guard lock(mutex_);
        std::istringstream words(line);
        std::string verb;
        std::string name;
        words >> verb >> name;
        SimulatedTelevision& television = device_.TheTelevision();
        if (verb == "plug") {
            device_.SetLongest(std::stoi(name));
            Plug();
        } else if (verb == "unplug") {
            Unplug();
        } else if (verb == "unplug-behind") {
            goesBehindCycles_ = television.Count(WireEvent::WriteCycle) + std::stoull(name);
            words >> requestsLeft_;
        } else if (verb == "image") {
            const auto& image =
                television.Memory(name == "primary" ? Chip::Primary : Chip::Secondary);
            return {image.begin(), image.end()};
        } else {
            return "what is " + line + "?";
        }
        usbredirparser_do_write(parser_);
        return {};
    }

  private:
    static UsbAdapter& Self(void* self) { return *static_cast<UsbAdapter*>(self); }

    template <typename Call, typename Byte>
    int Pass(Call call, Byte* data, int count) {
        const ssize_t passed = call(connection_, data, static_cast<std::size_t>(count));
        if (passed < 0 && errno == EAGAIN)
            return 0;
        return passed == 0 ? -1 : static_cast<int>(passed);
    }

    void Plug() {
        usb_redir_ep_info_header endpoints{};
        for (std::size_t i = 0; i < 32; ++i)
            endpoints.type[i] = usb_redir_type_invalid;
        endpoints.type[0] = endpoints.type[16] = usb_redir_type_control;
        endpoints.max_packet_size[0] = endpoints.max_packet_size[16] = 8;
        usbredirparser_send_ep_info(parser_, &endpoints);
        usb_redir_interface_info_header interfaces{};
        interfaces.interface_count = 1;
        usbredirparser_send_interface_info(parser_, &interfaces);
        usb_redir_device_connect_header device{
            usb_redir_speed_full, 0xFF, 0, 0, 0x0403, 0xC631, 0x0205};
        usbredirparser_send_device_connect(parser_, &device);
        plugged_ = true;
    }

    void Unplug() {
        usbredirparser_send_device_disconnect(parser_);
        plugged_ = false;
    }

    /// What comes for a device that is not there any more is left without an answer.
    void Answer(std::uint64_t id, usb_redir_control_packet_header header,
                std::span<const std::uint8_t> data) {
        if (!plugged_)
            return;
        auto reply = device_.Answer(
            {header.requesttype, header.request, header.value, header.index, header.length}, data);
        constexpr std::uint8_t kOfDriver = 0x40;
        const SimulatedTelevision& television = device_.TheTelevision();
        if ((header.requesttype & kOfDriver) != 0 &&
            television.Count(WireEvent::WriteCycle) >= goesBehindCycles_ && requestsLeft_-- == 0) {
            goesBehindCycles_ = kNever;
            return Unplug();
        }
        const bool reads = (header.requesttype & 0x80) != 0;
        header.status = reply ? usb_redir_success : usb_redir_stall;
        if (reads || !reply)
            header.length = static_cast<std::uint16_t>(reply ? reply->size() : 0);
        usbredirparser_send_control_packet(parser_, id, &header,
                                           reads && reply ? reply->data() : nullptr,
                                           reads && reply ? static_cast<int>(reply->size()) : 0);
    }

    usbredirparser* parser_ = usbredirparser_create();
    int connection_;
    std::mutex mutex_;
    TinyUsb device_;
    bool plugged_ = false;
    static constexpr auto kNever = std::numeric_limits<std::uint64_t>::max();
    std::uint64_t goesBehindCycles_ = kNever;
    int requestsLeft_ = 0;
};

int ConnectionAt(const std::string& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    path.copy(address.sun_path, sizeof address.sun_path - 1);
    const int listener = socket(AF_UNIX, SOCK_STREAM, 0);
    if (bind(listener, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0 ||
        listen(listener, 1) != 0) {
        std::perror(path.c_str());
        std::exit(1);
    }
    return accept4(listener, nullptr, nullptr, SOCK_NONBLOCK);
}

}  // namespace

int main(int count, char* arguments[]) {
    if (count != 3)
        return 2;
    UsbAdapter adapter(ConnectionAt(arguments[1]));
    ListenForControl(arguments[2],
                     [&adapter](const std::string& line) { return adapter.Control(line); });
    adapter.Serve();
    std::_Exit(0);
}
