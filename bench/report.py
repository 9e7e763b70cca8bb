#!/usr/bin/env python3
"""Print the performance table from the results that scripts/bench.sh gathered.

    python3 bench/report.py RESULTS_DIR

RESULTS_DIR holds bench.json (Google Benchmark's JSON output of posprint_bench),
wire.jsonl (posprint_wire's lines) and footprint.json (written by scripts/bench.sh).
Times of the in-memory benchmarks are CPU times (the median of the repetitions): on a
machine shared with other work, wall-clock times measure the neighbours too.
"""
import json
import os
import sys


def load_benchmarks(path):
    with open(path) as f:
        data = json.load(f)
    results = {}
    for b in data['benchmarks']:
        if b.get('error_occurred'):
            results[b['run_name']] = {'error': b.get('error_message', 'failed')}
            continue
        if b.get('run_type') == 'aggregate' and b.get('aggregate_name') != 'median':
            continue
        name = b['run_name'].split('/iterations:')[0].split('/real_time')[0]
        results[name] = b
    return data.get('context', {}), results


def ns(b):
    unit = {'ns': 1, 'us': 1e3, 'ms': 1e6, 's': 1e9}[b['time_unit']]
    return b['cpu_time'] * unit, b['real_time'] * unit


def fmt_time(value_ns):
    if value_ns >= 1e6:
        return f'{value_ns / 1e6:.2f} ms'
    if value_ns >= 1e3:
        return f'{value_ns / 1e3:.2f} µs'
    return f'{value_ns:.0f} ns'


def table(header, rows):
    print('| ' + ' | '.join(header) + ' |')
    print('|' + '|'.join('---' for _ in header) + '|')
    for row in rows:
        print('| ' + ' | '.join(str(c) for c in row) + ' |')
    print()


def main():
    results_dir = sys.argv[1]
    context, bench = load_benchmarks(os.path.join(results_dir, 'bench.json'))
    wire = []
    wire_path = os.path.join(results_dir, 'wire.jsonl')
    if os.path.exists(wire_path):
        with open(wire_path) as f:
            wire = [json.loads(line) for line in f if line.strip()]
    footprint = {}
    footprint_path = os.path.join(results_dir, 'footprint.json')
    if os.path.exists(footprint_path):
        with open(footprint_path) as f:
            footprint = json.load(f)

    models = []
    for name in bench:
        if name.startswith(('receipt/', 'label/')):
            models.append(name)

    print('## Reference jobs on the memory port (one ticket or label, logo converted every time)\n')
    rows = []
    for name in models:
        b = bench[name]
        job, model = name.split('/', 1)
        if 'error' in b:
            rows.append([model, job, 'not printed: ' + b['error'], '', '', '', ''])
            continue
        cpu, real = ns(b)
        target = 'under 10 µs' if job == 'receipt' else 'under 1 µs'
        rows.append([model, job, fmt_time(cpu), fmt_time(real), f"{b.get('allocs', 0):.0f}",
                     f"{b.get('out_bytes', 0):.0f}", target])
    table(['model', 'job', 'CPU time', 'wall time', 'allocations', 'bytes out', 'target'], rows)

    print('## Logo conversion (MB of BMP file per second, CPU time)\n')
    rows = []
    for name, b in bench.items():
        if not name.startswith('logo/') or 'error' in b:
            continue
        _, kind, size = name.split('/')
        cpu, _ = ns(b)
        rate = b.get('bytes_per_second', 0) / 1e6
        target = 'over 500 MB/s' if size == '384x120' else ''
        rows.append([kind, size, fmt_time(cpu), f'{rate:.0f} MB/s', target])
    table(['conversion', 'logo', 'CPU time', 'rate', 'target'], rows)

    print('## Field kinds on the memory port (CPU time of one NEWPRINT)\n')
    field_models = []
    fields = []
    for name in bench:
        if name.startswith('field/'):
            _, model, field = name.split('/', 2)
            if model not in field_models:
                field_models.append(model)
            if field not in fields:
                fields.append(field)
    rows = []
    for field in fields:
        row = [field]
        for model in field_models:
            b = bench.get(f'field/{model}/{field}')
            if b is None or 'error' in b:
                row.append('–')
            else:
                row.append(fmt_time(ns(b)[0]))
        rows.append(row)
    table(['field'] + field_models, rows)

    print('## CHECK round trip on a pseudo-terminal (printer answering at once; wall time)\n')
    rows = []
    for name, b in bench.items():
        if not name.startswith('check_pty/'):
            continue
        model = name.split('/')[1]
        if 'error' in b:
            rows.append([model, b['error'], 'under 2 ms'])
        else:
            rows.append([model, fmt_time(ns(b)[1]), 'under 2 ms'])
    table(['model', 'CHECK', 'target'], rows)

    if wire:
        print('## Wire speed: the reference job through `posprint run` to a printer draining at the baud rate\n')
        rows = []
        for w in wire:
            note = '' if w['exit_status'] == 0 else f"exit {w['exit_status']}"
            rows.append([w['model'], w['job'], w['baud'], w['bytes'], f"{w['wire_ms']:.1f}", f"{w['waits_ms']:.1f}",
                         f"{w['wall_ms']:.1f}", f"{w['overhead_ms']:.1f}", f"{w['overhead_pct']:.2f} %", note])
        table(['model', 'job', 'baud', 'bytes', 'wire ms', 'waits ms', 'wall ms', 'overhead ms',
               'overhead / wire', 'note'], rows)

    if footprint:
        print('## Footprint\n')
        rows = [
            ['driver plug-in, stripped', f"{footprint['plugin_stripped_bytes'] / 1024:.0f} KB", 'under 400 KB'],
            ['posprint run, sample receipt, peak memory (RSS)', f"{footprint['peak_rss_kb'] / 1024:.1f} MB",
             'under 8 MB'],
        ]
        receipt = bench.get('receipt/TMT70')
        if receipt and 'error' not in receipt:
            rows.append(['heap allocations per reference receipt (TMT70)', f"{receipt.get('allocs', 0):.0f}", ''])
        table(['what', 'measured', 'target'], rows)

    print(f"Machine: {context.get('num_cpus', '?')} CPUs at {context.get('mhz_per_cpu', '?')} MHz, "
          f"load average {', '.join(f'{x:.2f}' for x in context.get('load_avg', []))} when the benchmarks ran.")


if __name__ == '__main__':
    main()
