// Which lanes are shown, in which order and how high. A lane shows one status channel, or analog channels that are laid
// over one another; they share a scale with all lanes of their group unless they have their own.

export const kStatusHeight = 22;
const kMostValue = Number.MAX_VALUE / 8; // at either end of a lane, whose height is a number then
const kNameHeight = 19;
export const kLeastHeight = 28;
export const kMostHeight = 600;

function groupOf(channel) {
    return [channel.unit, channel.side, channel.info.component].join("\u0000");
}

export class Lanes {
    constructor(recording) {
        this.recording = recording;
        this.scaling = "group"; // "group" | "own" | "view"
        this.showsConstant = false;
        this.reset();
    }

    reset() {
        const { analog, status } = this.recording;
        this.all = [...analog, ...status].map((channel) => ({ id: channel.id, kind: channel.kind, channels: [channel],
            height: 0, isHidden: false }));
        this.layOut();
    }

    isFolded(lane) {
        return lane.kind === "status" && lane.channels[0].isConstant && !this.showsConstant;
    }

    get shown() {
        return this.all.filter((lane) => !lane.isHidden && !this.isFolded(lane));
    }

    get constantCount() {
        return this.recording.status.filter((channel) => channel.isConstant).length;
    }

    lane(id) {
        return this.all.find((lane) => lane.id === id);
    }

    laneOf(channel) {
        return this.all.find((lane) => lane.channels.includes(channel));
    }

    // Sets the top of each shown lane. `available` is the height that is to be filled, if there are few.
    layOut(available = this.available ?? 600) {
        this.available = available;
        const { shown } = this;
        const analog = shown.filter((lane) => lane.kind === "analog");
        const strips = (shown.length - analog.length) * kStatusHeight;
        const free = Math.max(available - Math.min(strips, available * 0.4), 0);
        const usual = Math.round(Math.min(Math.max(free / Math.max(analog.length, 1), 58), 170));
        let top = 0;
        for (const lane of shown) {
            lane.top = top;
            lane.shownHeight = lane.height || (lane.kind === "status" ? kStatusHeight
                : Math.max(usual, lane.channels.length * kNameHeight + 10));
            top += lane.shownHeight;
        }
        this.total = top;
    }

    resize(lane, height) {
        lane.height = Math.round(Math.min(Math.max(height, lane.kind === "status" ? 14 : kLeastHeight), kMostHeight));
        this.layOut();
    }

    hide(lane, isHidden = true) {
        lane.isHidden = isHidden;
        this.layOut();
    }

    // Moves it before (-1) or behind (1) its shown neighbour. Whether it could.
    move(lane, direction) {
        const { shown } = this;
        const other = shown[shown.indexOf(lane) + direction];
        if (!other) {
            return false;
        }
        this.place(lane, other, direction > 0);
        return true;
    }

    place(lane, other, isBehind) {
        this.all.splice(this.all.indexOf(lane), 1);
        this.all.splice(this.all.indexOf(other) + (isBehind ? 1 : 0), 0, lane);
        this.layOut();
    }

    // Lays the channels of an analog lane over those of another. Whether it could.
    overlay(lane, other) {
        if (lane === other || lane.kind !== "analog" || other?.kind !== "analog") {
            return false;
        }
        other.channels.push(...lane.channels);
        this.all.splice(this.all.indexOf(lane), 1);
        this.layOut();
        return true;
    }

    split(lane) {
        const at = this.all.indexOf(lane);
        const parts = lane.channels.map((channel) => ({ ...lane, id: channel.id, channels: [channel] }));
        this.all.splice(at, 1, ...parts);
        this.layOut();
    }

    // One lane for the phases of each group, which stand beside one another.
    overlayPhases() {
        const joined = [];
        for (const lane of this.all) {
            const last = joined.at(-1);
            const isSame = last && lane.kind === "analog" && last.kind === "analog" && !lane.isHidden
                && !last.isHidden &&
                groupOf(last.channels[0]) === groupOf(lane.channels[0]) && lane.channels[0].phase !== "" &&
                !last.channels.some((channel) => channel.phase === lane.channels[0].phase);
            if (isSame) {
                last.channels.push(...lane.channels);
            } else {
                joined.push({ ...lane, channels: [...lane.channels] });
            }
        }
        this.all = joined;
        this.layOut();
    }

    splitAll() {
        for (const lane of this.all.filter((one) => one.channels.length > 1)) {
            this.split(lane);
        }
    }

    get hasOverlays() {
        return this.all.some((lane) => lane.channels.length > 1);
    }

    // The range of values of a lane, with room at both ends; `begin` and `end` are the samples in view.
    range(lane, begin, end) {
        let channels = lane.channels;
        if (this.scaling === "group") {
            const groups = new Set(lane.channels.map(groupOf));
            channels = this.recording.analog.filter((channel) => groups.has(groupOf(channel)));
        }
        let least = Infinity;
        let greatest = -Infinity;
        for (const channel of channels) {
            const [low, high] = this.scaling === "view" ? Lanes._rangeInView(channel, begin, end) : channel.range;
            least = Math.max(Math.min(least, low), -kMostValue);
            greatest = Math.min(Math.max(greatest, high), kMostValue);
        }
        if (least > 0 && least < greatest / 2) {
            least = 0;
        }
        if (greatest < 0 && greatest > least / 2) {
            greatest = 0;
        }
        if (!(greatest > least)) {
            const room = Math.abs(least) || 1;
            return [least - room, least + room];
        }
        const room = (greatest - least) * 0.06;
        return [least - room, greatest + room];
    }

    static _rangeInView(channel, begin, end) {
        channel.pyramid.find(begin, end);
        const ends = [channel.pyramid.least, channel.pyramid.greatest].map((raw) =>
            raw * channel.scale.a + channel.scale.b);
        return ends.every(Number.isFinite) ? [Math.min(...ends), Math.max(...ends)] : channel.range;
    }
}
