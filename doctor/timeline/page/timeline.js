// Draws the timeline that the page holds as JSON. What a log says gets into the page as text only: by textContent, or
// as an attribute that no browser takes for code.
(() => {
    "use strict";

    const neighbours = 5; // lines shown before and after one
    const mostShown = 300; // lines shown at once
    const mostMarkRows = 6;
    const height = { axis: 24, name: 18, span: 20, mark: 13, gap: 4 };

    const byId = (id) => document.getElementById(id);
    const clockText = (time) => new Date(time).toISOString().slice(11, 23);
    const timeText = (time) => new Date(time).toISOString().slice(0, 23).replace("T", " ");

    function durationText(milliseconds) {
        if (milliseconds < 1000) {
            return `${milliseconds} ms`;
        }
        const units = [[86400e3, "d"], [3600e3, "h"], [60e3, "min"], [1e3, "s"]];
        const [size, unit] = units.find(([each]) => milliseconds >= each);
        return `${+(milliseconds / size).toFixed(3)} ${unit}`;
    }

    // --- data -------------------------------------------------------------------------------------------------------

    const data = JSON.parse(byId("data").textContent);
    const lines = data.lines.map(([time, level, thread, category, message, file, number]) =>
        ({ time, level, thread, category, message, place: `${data.files[file]}:${number}` }));
    const items = itemsOf(data);
    const extent = extentOf();

    function itemsOf({ spans, marks }) {
        const all = [
            ...spans.map(([lane, name, begin, end, outcome, detail, stage, own]) =>
                ({ kind: "span", lane, name, begin, end, outcome, detail, stage, lines: own })),
            ...marks.map(([lane, time, name, outcome, line]) => ({
                kind: "mark", lane, name: name ?? lines[line].message, begin: time, end: time, outcome, detail: "",
                stage: "", lines: line === null ? [] : [line],
            })),
        ];
        const latest = d3.max(all, (item) => Math.max(item.begin, item.end ?? item.begin));
        for (const item of all) {
            item.length = item.end === null ? null : item.end - item.begin;
            item.end = Math.max(item.begin, item.end ?? latest);
        }
        all.sort((one, other) => one.begin - other.begin || other.end - one.end || one.lane - other.lane);
        all.forEach((item, index) => { item.id = index; });
        return all;
    }

    // The times that can be shown: all, with a margin.
    function extentOf() {
        const begin = d3.min(items, (item) => item.begin) ?? 0;
        const end = d3.max(items, (item) => item.end) ?? 0;
        const margin = Math.max(1, (end - begin) / 50);
        return [begin - margin, end + margin];
    }

    // Gives each a row in which it stands alone, until there are `mostRows`. Returns how many rows that takes.
    function stack(sorted, mostRows) {
        const ends = [];
        for (const item of sorted) {
            const free = ends.findIndex((end) => end < item.begin);
            item.row = free >= 0 ? free : ends.length < mostRows ? ends.length : item.id % mostRows;
            ends[item.row] = item.end;
        }
        return ends.length;
    }

    function lengthTexts({ kind, length }) {
        if (kind === "mark" || length === null) {
            return [];
        }
        return [length < 0 ? `ends ${durationText(-length)} before its begin` : durationText(length)];
    }

    function describe(item) {
        const outcome = item.outcome === "neutral" ? [] : [item.outcome];
        return [item.name, ...outcome, clockText(item.begin), ...lengthTexts(item)].join(", ");
    }

    // --- chart ------------------------------------------------------------------------------------------------------

    const chart = d3.select("#chart");
    const svg = chart.append("svg").attr("role", "group").attr("aria-labelledby", "timeline-heading");
    const axis = svg.append("g").attr("class", "axis").attr("aria-hidden", "true")
        .attr("transform", `translate(0 ${height.axis - 1})`);
    const cross = d3.symbol().type(d3.symbolCross).size(70)();
    const circle = d3.symbol().type(d3.symbolCircle).size(50)();
    const lanes = layOut();
    const laneGroups = drawLanes();
    const base = d3.scaleUtc().domain(extent);
    const zoom = d3.zoom().filter(() => !d3.event.button).on("zoom", draw);
    let width = 0;
    let x = base;
    let shown = extent; // the times at both ends
    let current = null;
    const lastFailure = items.filter((item) => item.outcome === "failed").pop();

    function layOut() {
        let top = height.axis;
        return data.lanes.map((name, index) => {
            const own = items.filter((item) => item.lane === index);
            const spans = own.filter((item) => item.kind === "span");
            const marks = own.filter((item) => item.kind === "mark");
            const marksTop = height.name + stack(spans, Infinity) * height.span;
            const rows = stack(marks, mostMarkRows);
            spans.forEach((item) => { item.y = height.name + item.row * height.span; });
            marks.forEach((item) => { item.y = marksTop + (item.row + 0.5) * height.mark; });
            const lane = { name, top, items: own, height: marksTop + rows * height.mark + height.gap, spans, marks };
            top += lane.height;
            return lane;
        });
    }

    function drawLanes() {
        const groups = svg.append("g").selectAll("g").data(lanes).join("g").attr("class", "lane").attr("role", "group")
            .attr("aria-label", (lane) => `${lane.name}: spans ${lane.spans.length}, marks ${lane.marks.length}`)
            .attr("transform", (lane) => `translate(0 ${lane.top})`);
        groups.append("rect").attr("class", "lane-ground").attr("width", "100%").attr("height", (lane) => lane.height);
        groups.append("text").attr("class", "lane-name").attr("x", 4).attr("y", 13).text((lane) => lane.name);
        groups.append("g").attr("class", "items");
        return groups;
    }

    // One for each place on the screen: what is current or failed stands before others.
    function drawn(lane) {
        const places = new Map();
        const rank = (item) => (item === current ? 2 : item.outcome === "failed" ? 1 : 0);
        for (const item of lane.items) {
            const [left, right] = [x(item.begin), x(item.end)];
            if (right < -height.mark || left > width + height.mark) {
                continue;
            }
            const place = right - left > 1 ? item.id : `${item.y} ${Math.round(left)}`;
            if (!places.has(place) || rank(item) > rank(places.get(place))) {
                places.set(place, item);
            }
        }
        return [...places.values()];
    }

    function createItem(item) {
        const isSpan = item.kind === "span";
        const node = d3.create(isSpan ? "svg:svg" : "svg:g").attr("id", `item-${item.id}`).attr("role", "button")
            .attr("aria-label", describe(item)).on("click", () => choose(item));
        node.append("title").text(describe(item));
        if (isSpan) {
            node.attr("y", item.y).attr("height", height.span - 2);
            node.append("rect").attr("width", "100%").attr("height", "100%").attr("rx", 3);
            node.append("text").attr("x", 6).attr("y", 13).text((item.outcome === "failed" ? "✕ " : "") + item.name);
        } else {
            node.append("path").attr("d", item.outcome === "failed" ? cross : circle);
        }
        return node.node();
    }

    function placeItem(item) {
        const node = d3.select(this).attr("class", `item ${item.kind} ${item.outcome}`)
            .classed("found", item.isFound).classed("current", item === current);
        if (item.kind === "span") {
            const left = Math.max(-height.span, x(item.begin));
            const right = Math.min(width + height.span, x(item.end));
            node.attr("x", left).attr("width", Math.max(3, right - left));
        } else {
            node.attr("transform", `translate(${x(item.begin)} ${item.y})`);
        }
    }

    function tickText(time) {
        const text = timeText(time);
        if (time % 1000) {
            return text.slice(11);
        }
        return time % 60e3 ? text.slice(11, 19) : time % 86400e3 ? text.slice(11, 16) : text.slice(0, 10);
    }

    function draw() {
        const transform = d3.zoomTransform(svg.node());
        x = transform.rescaleX(base);
        shown = [0, width].map((place) => extent[0] + (transform.invertX(place) / width) * (extent[1] - extent[0]));
        axis.call(d3.axisTop(x).ticks(width / 170).tickFormat((time) => tickText(+time)));
        laneGroups.select(".items").selectAll(".item").data(drawn, (item) => item.id)
            .join((entering) => entering.append(createItem)).each(placeItem).order();
        const [begin, end] = shown.map(Math.round);
        const length = Math.round(shown[1] - shown[0]);
        const text = `${timeText(begin)} to ${timeText(end)}, ${durationText(length)}`;
        byId("range").textContent = items.length > 0 ? text : "";
    }

    function resize() {
        const [begin, end] = shown;
        width = byId("chart").clientWidth;
        const whole = lanes.reduce((sum, lane) => sum + lane.height, height.axis);
        svg.attr("width", width).attr("height", whole);
        base.range([0, width]);
        const sharpest = Math.max(1, ((extent[1] - extent[0]) / width) * 50); // 50 pixels for a millisecond
        zoom.extent([[0, 0], [width, whole]]).translateExtent([[0, 0], [width, whole]]).scaleExtent([1, sharpest]);
        show(begin, end);
    }

    // Shows these times, or as near to them as the extent allows.
    function show(begin, end) {
        const [first, last] = extent;
        const length = Math.min(last - first, Math.max(end - begin, width / 50));
        const from = Math.min(last - length, Math.max(first, (begin + end - length) / 2));
        const scale = (last - first) / length;
        svg.call(zoom.transform, d3.zoomIdentity.scale(scale).translate(-base(from), 0));
    }

    const showWhole = () => show(...extent);
    const zoomBy = (factor) => svg.call(zoom.scaleBy, factor);
    const panBy = (part) => show(...shown.map((time) => time + part * (shown[1] - shown[0])));
    const goTo = (time) => show(time - (shown[1] - shown[0]) / 2, time + (shown[1] - shown[0]) / 2);

    function showItem(item) {
        const margin = Math.max(2000, item.end - item.begin);
        show(item.begin - margin, item.end + margin);
    }

    // Of a long log the last failure is what its reader asks for.
    function showStart() {
        const hour = 3600e3;
        if (lastFailure && extent[1] - extent[0] > hour) {
            showItem(lastFailure);
        } else {
            showWhole();
        }
    }

    // --- lines ------------------------------------------------------------------------------------------------------

    // The own lines with their neighbours, in the log's order; null where lines are left out between.
    function withNeighbours(own) {
        const shown = [];
        let next = 0;
        for (const index of own) {
            const from = Math.max(next, index - neighbours);
            if (from > next && shown.length > 0) {
                shown.push(null);
            }
            next = Math.max(next, Math.min(lines.length, index + neighbours + 1));
            shown.push(...d3.range(from, next));
        }
        return shown;
    }

    function fillRow(index, own) {
        const row = d3.select(this);
        if (index === null) {
            row.append("td").attr("colspan", 6).text("⋮");
            return;
        }
        const line = lines[index];
        const time = line.time === null ? "" : timeText(line.time);
        row.attr("data-line", index).classed("own", own.has(index)).attr("aria-current", own.has(index) ? "true" : null)
            .classed("severe", ["ERROR", "FATAL"].includes(line.level));
        const { level, thread, category, message, place } = line;
        row.selectAll("td").data(Object.entries({ time, level, thread, category, message, place })).join("td")
            .attr("class", ([name]) => name).text(([, text]) => text);
    }

    function showLines(heading, detail, own) {
        const all = withNeighbours(own);
        const isOwn = new Set(own);
        byId("lines").hidden = false;
        d3.select("#lines table").attr("hidden", all.length === 0 ? "" : null);
        byId("lines-heading").textContent = heading;
        const left = all.length > mostShown ? `the first ${mostShown} of ${all.length} lines` : "";
        byId("detail").textContent = [detail, left].filter(Boolean).join("; ");
        d3.select("#lines tbody").selectAll("tr").remove();
        d3.select("#lines tbody").selectAll("tr").data(all.slice(0, mostShown)).join("tr")
            .each(function (index) { fillRow.call(this, index, isOwn); });
    }

    // --- what is current --------------------------------------------------------------------------------------------

    function makeCurrent(item) {
        current = item;
        if (item.end < shown[0] || item.begin > shown[1]) {
            goTo(item.begin);
        }
        draw();
        chart.attr("aria-activedescendant", `item-${item.id}`);
    }

    function choose(item) {
        makeCurrent(item);
        const count = item.lines.length === 0 ? "no line of the log" : "";
        const stage = item.stage && `stage: ${item.stage}`;
        const detail = [stage, item.detail, count].filter(Boolean).join("; ");
        showLines(`${data.lanes[item.lane]}: ${describe(item)}`, detail, item.lines);
    }

    function moveBy(step) {
        const index = current ? current.id + step : step > 0 ? 0 : items.length - 1;
        if (items[index]) {
            makeCurrent(items[index]);
        }
    }

    // --- search -----------------------------------------------------------------------------------------------------

    let hits = [];
    let hitIndex = -1;

    // What holds the text: spans and marks, and lines without a mark.
    function find(text) {
        const holds = (...texts) => texts.some((each) => String(each).toLowerCase().includes(text));
        const isFound = (line) => text !== "" && holds(line.message, line.category, line.thread, line.place);
        const found = new Set(d3.range(lines.length).filter((index) => isFound(lines[index])));
        const marked = new Set();
        for (const item of items) {
            const hasLine = item.kind === "mark" && found.has(item.lines[0]);
            item.isFound = text !== "" && (hasLine || holds(item.name, item.detail, item.stage));
            if (hasLine) {
                marked.add(item.lines[0]);
            }
        }
        const time = (hit) => hit.item?.begin ?? lines[hit.line].time ?? -Infinity;
        const alone = [...found].filter((line) => !marked.has(line));
        hits = [...items.filter((item) => item.isFound).map((item) => ({ item })), ...alone.map((line) => ({ line }))];
        hits.sort((one, other) => time(one) - time(other));
        hitIndex = -1;
        tellHits(text);
        draw();
    }

    function tellHits(text) {
        const place = hitIndex >= 0 ? `${hitIndex + 1} of ${hits.length}` : `${hits.length} found`;
        byId("hits").textContent = text === "" ? "" : place;
    }

    function stepHits(step) {
        if (hits.length === 0) {
            return;
        }
        hitIndex = (Math.max(hitIndex, step > 0 ? -1 : 0) + step + hits.length) % hits.length;
        tellHits(byId("query").value);
        const { item, line } = hits[hitIndex];
        if (item) {
            choose(item);
            return;
        }
        if (lines[line].time !== null) {
            goTo(lines[line].time);
        }
        showLines(lines[line].message, "", [line]);
    }

    // --- page -------------------------------------------------------------------------------------------------------

    function showVerdicts() {
        const entries = d3.select("#verdicts").selectAll("li").data(data.verdicts).join("li")
            .attr("class", (verdict) => verdict.outcome.replace(" ", "-"));
        entries.append("span").attr("class", "outcome").text((verdict) => verdict.outcome);
        entries.append("strong").each(function ({ stage }) {
            const own = items.filter((item) => item.stage === stage);
            const shown = own.filter((item) => item.outcome === "failed").pop() ?? own.pop();
            const place = d3.select(this);
            if (!shown) {
                place.text(stage);
                return;
            }
            place.append("button").attr("type", "button").text(stage).on("click", () => {
                showItem(shown);
                choose(shown);
            });
        });
        entries.append("span").text((verdict) => verdict.text);
        byId("stages").hidden = data.verdicts.length === 0;
    }

    const onChart = {
        ArrowLeft: () => panBy(-0.2),
        ArrowRight: () => panBy(0.2),
        ArrowUp: () => moveBy(-1),
        ArrowDown: () => moveBy(1),
        "+": () => zoomBy(1.5),
        "=": () => zoomBy(1.5),
        "-": () => zoomBy(1 / 1.5),
        Home: () => goTo(extent[0]),
        End: () => goTo(extent[1]),
        Enter: () => current && choose(current),
        " ": () => current && choose(current),
    };

    function listen() {
        const onClick = (id, act) => byId(id).addEventListener("click", act);
        onClick("zoom-in", () => zoomBy(1.5));
        onClick("zoom-out", () => zoomBy(1 / 1.5));
        onClick("whole", showWhole);
        onClick("failure", () => { showItem(lastFailure); choose(lastFailure); });
        onClick("previous", () => stepHits(-1));
        byId("failure").hidden = !lastFailure;
        byId("query").addEventListener("input", (event) => find(event.target.value.trim().toLowerCase()));
        byId("search").addEventListener("submit", (event) => { event.preventDefault(); stepHits(1); });
        byId("chart").addEventListener("keydown", (event) => {
            if (onChart[event.key] && !event.ctrlKey && !event.altKey && !event.metaKey) {
                event.preventDefault();
                onChart[event.key]();
            }
        });
        document.addEventListener("keydown", (event) => {
            if (event.key === "/" && event.target !== byId("query")) {
                event.preventDefault();
                byId("query").focus();
            }
        });
        new ResizeObserver(() => byId("chart").clientWidth !== width && resize()).observe(byId("chart"));
    }

    document.title = data.title;
    byId("title").textContent = data.title;
    byId("summary").textContent = data.summary;
    showVerdicts();
    svg.call(zoom);
    resize();
    showStart();
    listen();
})();
