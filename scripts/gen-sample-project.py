#!/usr/bin/env python3
"""Builds app/sampleproject.json, the sample unit project of velora-host.

Bills are real: project bills (name and item features as written by the
estimator) matched by name to the standard installation bill items, which give
the code, unit and work content. Quantities and prices are drawn from a seeded
generator, so the output is the same on every run.

usage: scripts/gen-sample-project.py [DATA_DIR] [OUT]
"""
import json
import os
import random
import re
import sys

HERE = os.path.dirname(os.path.abspath(__file__))
DATA = sys.argv[1] if len(sys.argv) > 1 else os.path.join(HERE, '..', '..', 'shared', 'data')
OUT = sys.argv[2] if len(sys.argv) > 2 else os.path.join(HERE, '..', 'app', 'sampleproject.json')
BOOKS = ['hubei-installation-2024.json', 'jiangsu-installation-2014.json']
MAX_BILLS = 72

# Unit -> (quantity range, composite unit price range).
RANGES = {
    'm': ((20, 900), (6, 160)), 'm²': ((10, 420), (25, 260)), 'm³': ((2, 60), (80, 420)),
    't': ((0.2, 8), (4200, 9800)), 'kg': ((50, 900), (8, 26)), '台': ((1, 12), (600, 9800)),
    '个': ((2, 160), (12, 380)), '套': ((1, 60), (60, 2600)), '组': ((1, 40), (90, 1200)),
    '项': ((1, 1), (800, 16000)), '系统': ((1, 3), (1500, 12000)), '根': ((2, 60), (20, 300)),
    '处': ((1, 30), (40, 600)), '块': ((2, 80), (15, 260)), '副': ((1, 40), (30, 400)),
}
DEFAULT_RANGE = ((1, 80), (20, 600))

MATERIALS = [
    # code, name, model, unit, category, origin, maker, brand, base price
    ('01001', '镀锌钢管', 'DN25', 'm', '材料', '天津', '天津友发钢管集团', '友发', 16.80),
    ('01002', '镀锌钢管', 'DN50', 'm', '材料', '天津', '天津友发钢管集团', '友发', 32.50),
    ('01003', '镀锌钢管', 'DN100', 'm', '材料', '天津', '天津友发钢管集团', '友发', 78.60),
    ('01004', '焊接钢管', 'DN150', 'm', '材料', '河北', '河北华岐钢管', '华岐', 118.00),
    ('01005', 'PP-R给水管', 'dn32 S4', 'm', '材料', '浙江', '浙江伟星新型建材', '伟星', 9.40),
    ('01006', 'UPVC排水管', 'dn110', 'm', '材料', '广东', '广东联塑科技实业', '联塑', 21.30),
    ('02001', '电力电缆', 'YJV-0.6/1kV-4×25+1×16', 'm', '材料', '江苏', '远东电缆有限公司', '远东', 96.40),
    ('02002', '电力电缆', 'WDZB-YJY-0.6/1kV-2×35+1×16', 'm', '材料', '江苏', '江苏上上电缆集团', '上上', 88.20),
    ('02003', '铜芯绝缘导线', 'BYJ-2.5mm²', 'm', '材料', '江苏', '江苏上上电缆集团', '上上', 2.35),
    ('02004', '铜芯绝缘导线', 'BV-4mm²', 'm', '材料', '江苏', '远东电缆有限公司', '远东', 3.60),
    ('02005', '控制电缆', 'KVV-4×1.5', 'm', '材料', '安徽', '安徽华能电缆集团', '华能', 7.90),
    ('02006', '电线管', 'JDG20', 'm', '材料', '浙江', '浙江中财管道', '中财', 4.20),
    ('02007', '电缆桥架', '200×100 δ=1.5', 'm', '材料', '江苏', '江苏华鹏桥架', '华鹏', 68.00),
    ('02008', '配电箱', 'AL1 非标 暗装', '台', '设备', '湖北', '武汉长江电气', '长江', 2860.00),
    ('02009', '接线盒', '86型 钢制', '个', '材料', '浙江', '浙江正泰电器', '正泰', 1.80),
    ('02010', '五孔插座', '10A 250V 安全型', '个', '材料', '广东', '公牛集团', '公牛', 14.50),
    ('02011', 'LED筒灯', '15W 4000K 嵌入式', '套', '材料', '广东', '欧普照明', '欧普', 46.00),
    ('03001', '闸阀', 'Z41H-16C DN100', '个', '材料', '浙江', '浙江超达阀门', '超达', 420.00),
    ('03002', '蝶阀', 'D71X-16 DN100', '个', '材料', '上海', '上海冠龙阀门', '冠龙', 265.00),
    ('03003', '室内消火栓', 'SN65 单栓', '套', '材料', '浙江', '浙江消防器材', '鼎盛', 185.00),
    ('03004', '闭式喷头', 'ZSTX15-68℃', '个', '材料', '福建', '福建天广消防', '天广', 9.80),
    ('03005', '一般填料套管', 'DN100', '个', '材料', '湖北', '武汉建工管件', '建工', 38.00),
    ('04001', '镀锌薄钢板', 'δ=0.75', 'm2', '材料', '上海', '宝山钢铁股份', '宝钢', 42.60),
    ('04002', '岩棉板', '50mm 100kg/m³', 'm3', '材料', '河北', '河北华美节能', '华美', 520.00),
    ('04003', '环氧煤沥青漆', '底漆', 'kg', '材料', '江苏', '江苏兰陵化工', '兰陵', 18.50),
    ('05001', '膨胀螺栓', 'M10×80', '套', '材料', '河北', '永年标准件', '永年', 0.85),
    ('05002', '型钢', '角钢 ∠50×5', 't', '材料', '湖北', '武汉钢铁', '武钢', 4380.00),
    ('05003', '电焊条', 'E4303 φ3.2', 'kg', '材料', '天津', '天津大桥焊材', '大桥', 7.20),
    ('06001', '水泥', 'P.O 42.5', 't', '材料', '湖北', '华新水泥', '华新', 460.00),
    ('06002', '中砂', '', 'm3', '材料', '湖北', '本地', '', 118.00),
    ('07001', '综合工日', '安装', '工日', '人工', '', '', '', 152.00),
    ('08001', '交流弧焊机', '32kV·A', '台班', '机械', '', '', '', 96.80),
]

MEASURES = [
    # code, name, unit, kind, organisation measure
    ('031401001', '脚手架', '项', 'ZJXQDA', False),
    ('031401002', '大型机械设备进出场及安拆', '项', 'ZJXQDA', False),
    ('031401004', '施工操作平台', '项', 'ZJXQDA', False),
    ('031401009', '安全生产', '项', 'ZJXQDB', True),
    ('031401010', '文明施工', '项', 'ZJXQDB', True),
    ('031401012', '临时设施', '项', 'ZJXQDB', True),
    ('031401013', '二次搬运', '项', 'ZJXQDB', True),
    ('031401020', '夜间施工增加费', '项', 'ZJXQDB', True),
    ('031401021', '冬雨季施工增加', '项', 'ZJXQDB', True),
]

SETTINGS = {
    'time': '2024年05月', 'place': '湖北省武汉市江汉区', 'placeCode': '420103', 'altitude': '50m',
    'taxMode': '一般计税', 'scope': '分部分项工程',
}


# Units the standard's tables print with a footnote mark or alternatives.
UNIT_FIXES = {'套mm²': '套', '支个': '支'}


def clean_unit(unit):
    unit = UNIT_FIXES.get(unit, unit)
    return re.split(r'[、(/（]', unit)[0] or unit


def numbered(lines):
    return '\n'.join('%d.%s' % (i + 1, line) for i, line in enumerate(lines))


def features_of(bill_text, name):
    rest = bill_text[len(name):].strip()
    parts = [p for p in re.split(r'\s+', rest) if p]
    lines = []
    for p in parts:
        if re.search(r'[:：]', p) or not lines:
            lines.append(p.replace(':', '：'))
        else:
            lines[-1] += ' ' + p
    return numbered(lines)


def drawn(rng, bounds, digits):
    lo, hi = bounds
    return round(rng.uniform(lo, hi), digits) if lo != hi else float(lo)


def standard_by_name(data):
    items = json.load(open(os.path.join(data, 'standard-bills', 'gb50856-2024-installation.json'), encoding='utf-8'))
    by_name = {}
    for it in items['items']:
        by_name.setdefault(it['name'], it)
    return by_name


def project_bills(data, by_name):
    bills, seen = [], set()
    for book in BOOKS:
        doc = json.load(open(os.path.join(data, 'project-bills', book), encoding='utf-8'))
        for it in doc['items']:
            name = it['bill_text'].split(' ')[0]
            std = by_name.get(name)
            if std is None or it['bill_text'] in seen:
                continue
            seen.add(it['bill_text'])
            bills.append((it, std, name))
            if len(bills) == MAX_BILLS:
                return bills
    return bills


def bill_record(ident, code, name, std, features, rng):
    unit = clean_unit(std['unit'])
    qty_range, price_range = RANGES.get(unit, DEFAULT_RANGE)
    return {
        'id': ident, 'kind': 4, 'code': code, 'name': name, 'unit': unit,
        'features': features, 'workContent': numbered(std['work_content']),
        'quantity': drawn(rng, qty_range, 2), 'price': drawn(rng, price_range, 2), 'sjkm': 'GB24',
    }


def bill_table(data):
    by_name = standard_by_name(data)
    sections, order, counters = {}, [], {}
    ident = 1000
    for it, std, name in project_bills(data, by_name):
        rng = random.Random(it['id'])
        counters[std['code']] = counters.get(std['code'], 0) + 1
        code = '%s%03d' % (std['code'], counters[std['code']])
        ident += 1
        key = std['code'][:4]
        if key not in sections:
            ident += 1
            sections[key] = {'id': ident, 'kind': 2, 'code': key, 'name': std['appendix_name'], 'children': []}
            order.append(key)
        sections[key]['children'].append(bill_record(ident, code, name, std, features_of(it['bill_text'], name), rng))
    return {'name': '分部分项工程', 'kind': 3001, 'items': [sections[k] for k in sorted(order)]}


def measure_table():
    unit_section = {'id': 9001, 'kind': 2, 'code': '1', 'name': '单价措施项目', 'children': []}
    org_section = {'id': 9002, 'kind': 2, 'code': '2', 'name': '总价措施项目', 'exclude': True, 'children': []}
    for n, (code, name, unit, kind, org) in enumerate(MEASURES):
        rng = random.Random(code)
        section = org_section if org else unit_section
        section['children'].append({
            'id': 9100 + n, 'kind': 4, 'code': code + '001', 'csCode': '%s.%d' % (section['code'], len(section['children']) + 1),
            'name': name, 'unit': unit, 'features': '', 'workContent': '',
            'quantity': 1.0, 'price': drawn(rng, RANGES['项'][1], 2), 'sjkm': kind,
        })
    return {'name': '措施项目', 'kind': 3004, 'items': [unit_section, org_section]}


def materials():
    out = []
    for n, (bh, mc, gg, dw, fl, cd, cj, pp, dj) in enumerate(MATERIALS):
        rng = random.Random(bh)
        out.append({'guid': n + 1, 'bh': bh, 'clmc': mc, 'ggxh': gg, 'dw': dw, 'zhfl': fl, 'cd': cd, 'cj': cj,
                    'pp': pp, 'sl': drawn(rng, (5, 900), 3), 'dj': dj, 'tj': round(dj * rng.uniform(0.92, 1.12), 2)})
    return out


def main():
    project = {
        'format': 'velora-project',
        'version': 1,
        'name': '武汉某办公楼安装工程',
        'unitWork': {'name': '办公楼给排水、电气及消防安装', 'qdSpec': 'GB24', 'jswjIndex': 0, 'delbIndex': 0},
        'settings': SETTINGS,
        'tables': [bill_table(DATA), measure_table()],
        'materials': materials(),
    }
    with open(OUT, 'w', encoding='utf-8') as f:
        json.dump(project, f, ensure_ascii=False, indent=1, sort_keys=True)
        f.write('\n')
    print(OUT)


if __name__ == '__main__':
    main()
