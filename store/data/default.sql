-- The application database delivered beside the program. Built into default.mdb at build time;
-- the program never creates it. Levels are stored in dBmW: dBµV and dBµV/m less 107.
-- Step limits carry two points at one frequency, in the order the levels follow along the band;
-- the index on (number, frequency) keeps that order when a query sorts by frequency. A reading
-- exactly at a step is judged on the segment below it.

PRAGMA application_id = 1264005940;
BEGIN;

CREATE TABLE version (versionnr FLOAT4);
INSERT INTO version VALUES (1.0);
INSERT INTO version VALUES (1.1);

-- Detector time constants in ms; the program doubles them into 0.5 ms sample counts.
CREATE TABLE qpeak ("tauf-30" FLOAT4, "tauf-1000" FLOAT4, "tent-30" FLOAT4, "tent-1000" FLOAT4);
INSERT INTO qpeak VALUES (1, 1, 160, 550);

CREATE TABLE unit (unitname VARCHAR(20) COLLATE NOCASE, unitoffset FLOAT4);
INSERT INTO unit VALUES ('dBmW', 0);
INSERT INTO unit VALUES ('dBµV', 107);
INSERT INTO unit VALUES ('dBmV', 47);
INSERT INTO unit VALUES ('dBµA', 73);
INSERT INTO unit VALUES ('dBpW', 90);
INSERT INTO unit VALUES ('dBµV/m', 107);
INSERT INTO unit VALUES ('dBW', -30);
INSERT INTO unit VALUES ('dBµW', 30);
INSERT INTO unit VALUES ('dBV', -13);

CREATE TABLE LimitHead (limitnr INTEGER, limitname VARCHAR(255) COLLATE NOCASE, loga BOOLEAN, Radiated BOOLEAN,
    Distance FLOAT4, Memo LONGTEXT COLLATE NOCASE, dat VARCHAR(30) COLLATE NOCASE, tim VARCHAR(30) COLLATE NOCASE,
    limunit VARCHAR(20) COLLATE NOCASE);
CREATE TABLE LimitDef (limitnr INTEGER, frequency FLOAT4, level_dbmw FLOAT4);
CREATE INDEX LimitDefOrder ON LimitDef (limitnr, frequency);

INSERT INTO LimitHead VALUES (1, 'CISPR 32 Class A conducted QP', 0, 0, 0, 'Quasi-peak, dBµV', '', '', 'dBµV');
INSERT INTO LimitDef VALUES (1, 0.15, -28), (1, 0.5, -28), (1, 0.5, -34), (1, 30, -34);

INSERT INTO LimitHead VALUES (2, 'CISPR 32 Class A conducted AV', 0, 0, 0, 'Average, dBµV', '', '', 'dBµV');
INSERT INTO LimitDef VALUES (2, 0.15, -41), (2, 0.5, -41), (2, 0.5, -47), (2, 30, -47);

INSERT INTO LimitHead VALUES (3, 'CISPR 32 Class B conducted QP', 1, 0, 0, 'Quasi-peak, dBµV', '', '', 'dBµV');
INSERT INTO LimitDef VALUES (3, 0.15, -41), (3, 0.5, -51), (3, 5, -51), (3, 5, -47), (3, 30, -47);

INSERT INTO LimitHead VALUES (4, 'CISPR 32 Class B conducted AV', 1, 0, 0, 'Average, dBµV', '', '', 'dBµV');
INSERT INTO LimitDef VALUES (4, 0.15, -51), (4, 0.5, -61), (4, 5, -61), (4, 5, -57), (4, 30, -57);

INSERT INTO LimitHead VALUES (5, 'CISPR 32 Class A radiated 10 m', 0, 1, 10, 'Quasi-peak, dBµV/m', '', '', 'dBµV/m');
INSERT INTO LimitDef VALUES (5, 30, -67), (5, 230, -67), (5, 230, -60), (5, 1000, -60);

INSERT INTO LimitHead VALUES (6, 'CISPR 32 Class A radiated 3 m', 0, 1, 3, 'Quasi-peak, dBµV/m', '', '', 'dBµV/m');
INSERT INTO LimitDef VALUES (6, 30, -57), (6, 230, -57), (6, 230, -50), (6, 1000, -50);

INSERT INTO LimitHead VALUES (7, 'CISPR 32 Class B radiated 10 m', 0, 1, 10, 'Quasi-peak, dBµV/m', '', '', 'dBµV/m');
INSERT INTO LimitDef VALUES (7, 30, -77), (7, 230, -77), (7, 230, -70), (7, 1000, -70);

INSERT INTO LimitHead VALUES (8, 'CISPR 32 Class B radiated 3 m', 0, 1, 3, 'Quasi-peak, dBµV/m', '', '', 'dBµV/m');
INSERT INTO LimitDef VALUES (8, 30, -67), (8, 230, -67), (8, 230, -60), (8, 1000, -60);

INSERT INTO LimitHead VALUES (9, 'CISPR 11 Class A conducted QP', 0, 0, 0, 'Quasi-peak, dBµV', '', '', 'dBµV');
INSERT INTO LimitDef VALUES (9, 0.15, -28), (9, 0.5, -28), (9, 0.5, -34), (9, 30, -34);

INSERT INTO LimitHead VALUES (10, 'CISPR 11 Class A conducted AV', 0, 0, 0, 'Average, dBµV', '', '', 'dBµV');
INSERT INTO LimitDef VALUES (10, 0.15, -41), (10, 0.5, -41), (10, 0.5, -47), (10, 30, -47);

INSERT INTO LimitHead VALUES (11, 'CISPR 11 Class B conducted QP', 1, 0, 0, 'Quasi-peak, dBµV', '', '', 'dBµV');
INSERT INTO LimitDef VALUES (11, 0.15, -41), (11, 0.5, -51), (11, 5, -51), (11, 5, -47), (11, 30, -47);

INSERT INTO LimitHead VALUES (12, 'CISPR 11 Class B conducted AV', 1, 0, 0, 'Average, dBµV', '', '', 'dBµV');
INSERT INTO LimitDef VALUES (12, 0.15, -51), (12, 0.5, -61), (12, 5, -61), (12, 5, -57), (12, 30, -57);

INSERT INTO LimitHead VALUES (13, 'CISPR 11 Class A radiated 30 m', 0, 1, 30, 'Quasi-peak, dBµV/m', '', '', 'dBµV/m');
INSERT INTO LimitDef VALUES (13, 30, -77), (13, 230, -77), (13, 230, -70), (13, 1000, -70);

INSERT INTO LimitHead VALUES (14, 'CISPR 11 Class A radiated 10 m', 0, 1, 10, 'Quasi-peak, dBµV/m', '', '', 'dBµV/m');
INSERT INTO LimitDef VALUES (14, 30, -67), (14, 230, -67), (14, 230, -60), (14, 1000, -60);

INSERT INTO LimitHead VALUES (15, 'CISPR 11 Class B radiated 10 m', 0, 1, 10, 'Quasi-peak, dBµV/m', '', '', 'dBµV/m');
INSERT INTO LimitDef VALUES (15, 30, -77), (15, 230, -77), (15, 230, -70), (15, 1000, -70);

INSERT INTO LimitHead VALUES (16, 'FCC 15 Class A conducted QP', 0, 0, 0, 'Quasi-peak, dBµV', '', '', 'dBµV');
INSERT INTO LimitDef VALUES (16, 0.15, -28), (16, 0.5, -28), (16, 0.5, -34), (16, 30, -34);

INSERT INTO LimitHead VALUES (17, 'FCC 15 Class A conducted AV', 0, 0, 0, 'Average, dBµV', '', '', 'dBµV');
INSERT INTO LimitDef VALUES (17, 0.15, -41), (17, 0.5, -41), (17, 0.5, -47), (17, 30, -47);

INSERT INTO LimitHead VALUES (18, 'FCC 15 Class B conducted QP', 1, 0, 0, 'Quasi-peak, dBµV', '', '', 'dBµV');
INSERT INTO LimitDef VALUES (18, 0.15, -41), (18, 0.5, -51), (18, 5, -51), (18, 5, -47), (18, 30, -47);

INSERT INTO LimitHead VALUES (19, 'FCC 15 Class B conducted AV', 1, 0, 0, 'Average, dBµV', '', '', 'dBµV');
INSERT INTO LimitDef VALUES (19, 0.15, -51), (19, 0.5, -61), (19, 5, -61), (19, 5, -57), (19, 30, -57);

INSERT INTO LimitHead VALUES (20, 'FCC 15 Class A radiated 10 m', 0, 1, 10, 'Quasi-peak, dBµV/m', '', '', 'dBµV/m');
INSERT INTO LimitDef VALUES (20, 30, -67.9), (20, 88, -67.9), (20, 88, -63.5), (20, 216, -63.5), (20, 216, -60.6), (20, 960, -60.6), (20, 960, -57.5), (20, 1000, -57.5);

INSERT INTO LimitHead VALUES (21, 'FCC 15 Class B radiated 3 m', 0, 1, 3, 'Quasi-peak, dBµV/m', '', '', 'dBµV/m');
INSERT INTO LimitDef VALUES (21, 30, -67), (21, 88, -67), (21, 88, -63.5), (21, 216, -63.5), (21, 216, -61), (21, 960, -61), (21, 960, -53), (21, 1000, -53);

-- Components: antennas add their factor, losses their loss; a gain is stored as a negative loss.
-- Number 0 is the empty position of a configuration.
CREATE TABLE loshead (losnr INTEGER, losname VARCHAR(255) COLLATE NOCASE, lostyp SMALLINT, Distance FLOAT4,
    Memo LONGTEXT COLLATE NOCASE, dat VARCHAR(30) COLLATE NOCASE, tim VARCHAR(30) COLLATE NOCASE);
CREATE TABLE losdef (losnr INTEGER, frequency FLOAT4, level_dbmw FLOAT4);
CREATE INDEX losdefOrder ON losdef (losnr, frequency);

INSERT INTO loshead VALUES (0, 'none', 1, 0, 'Empty position', '', '');

INSERT INTO loshead VALUES (1, 'Bilog antenna 30-1000 MHz, 3 m', 0, 3, 'Antenna factor dB/m, typical curve', '', '');
INSERT INTO losdef VALUES (1, 30, 18), (1, 40, 13), (1, 50, 10), (1, 60, 8), (1, 80, 7), (1, 100, 9.5), (1, 150, 8.5), (1, 200, 10.5), (1, 300, 13.5), (1, 400, 15.5), (1, 500, 17.5), (1, 600, 19), (1, 700, 20), (1, 800, 21), (1, 900, 22.5), (1, 1000, 24);

INSERT INTO loshead VALUES (2, 'Biconical antenna 30-300 MHz, 10 m', 0, 10, 'Antenna factor dB/m, typical curve', '', '');
INSERT INTO losdef VALUES (2, 30, 14.5), (2, 35, 12.5), (2, 40, 11), (2, 50, 10), (2, 60, 9.5), (2, 70, 8.5), (2, 80, 7.5), (2, 90, 8.5), (2, 100, 10), (2, 120, 11.5), (2, 140, 12), (2, 160, 13.5), (2, 180, 15), (2, 200, 16.5), (2, 250, 17.5), (2, 300, 19.5);

INSERT INTO loshead VALUES (3, 'Log-periodic antenna 290-1000 MHz, 10 m', 0, 10, 'Antenna factor dB/m', '', '');
INSERT INTO losdef VALUES (3, 290, 13), (3, 300, 13), (3, 350, 14.2), (3, 400, 15.9), (3, 450, 16.7), (3, 500, 17.5), (3, 550, 19.2), (3, 600, 18.9), (3, 650, 19.8), (3, 700, 20.4), (3, 750, 20.6), (3, 800, 21.1), (3, 850, 21.4), (3, 900, 21.7), (3, 950, 22.9), (3, 1000, 22.8);

INSERT INTO loshead VALUES (4, 'Cable RG-58 10 m', 1, 0, 'Loss dB', '', '');
INSERT INTO losdef VALUES (4, 0.1, 0.04), (4, 1, 0.13), (4, 10, 0.46), (4, 30, 0.81), (4, 100, 1.61), (4, 300, 3.09), (4, 1000, 7.05);

INSERT INTO loshead VALUES (5, 'Cable RG-223 2 m', 1, 0, 'Loss dB', '', '');
INSERT INTO losdef VALUES (5, 0.1, 0.007), (5, 1, 0.023), (5, 10, 0.08), (5, 30, 0.14), (5, 100, 0.28), (5, 300, 0.54), (5, 1000, 1.23);

INSERT INTO loshead VALUES (6, 'Preamplifier 25 dB', 2, 0, 'Gain dB, stored negative', '', '');
INSERT INTO losdef VALUES (6, 0.009, -20), (6, 0.05, -24), (6, 0.1, -25.5), (6, 1, -26), (6, 10, -26), (6, 30, -26), (6, 100, -25.9), (6, 300, -25.6), (6, 500, -25.3), (6, 700, -25), (6, 1000, -24.5);

CREATE TABLE MeasureCount (limitnr INTEGER, losnr INTEGER);
INSERT INTO MeasureCount VALUES (21, 6);

CREATE TABLE config (configname VARCHAR(255) COLLATE NOCASE, devicea INTEGER, deviceb INTEGER, devicec INTEGER,
    deviced INTEGER, devicee INTEGER);
INSERT INTO config VALUES ('Radiated 3 m bilog, cable, preamplifier', 1, 4, 6, 0, 0);
INSERT INTO config VALUES ('Radiated 10 m biconical, cable', 2, 4, 0, 0, 0);
INSERT INTO config VALUES ('Conducted LISN cable', 5, 0, 0, 0, 0);

-- peakdet 1 = quasi-peak; rbw 0/1/2 = 400/120/9 kHz; mode 0 = Sweep + Step, 1 = Step.
CREATE TABLE test (Name VARCHAR(255) COLLATE NOCASE, config VARCHAR(255) COLLATE NOCASE, peak INTEGER, average INTEGER,
    peakdet SMALLINT, avdet BOOLEAN, rbw SMALLINT, unit VARCHAR(20) COLLATE NOCASE, ref FLOAT4, atten FLOAT4, mode TINYINT,
    startfreq FLOAT4, stopfreq FLOAT4, meastime SMALLINT, limitbezug TINYINT, leveldist FLOAT4, horizontal BOOLEAN,
    vertical BOOLEAN, ambient BOOLEAN);
INSERT INTO test VALUES ('CISPR 32 B radiated 3 m', 'Radiated 3 m bilog, cable, preamplifier', 8, 0,
    1, 0, 1, 'dBµV/m', -30, 10, 0, 30, 1000, 1, 0, 6, 1, 1, 0);
INSERT INTO test VALUES ('CISPR 32 B conducted', 'Conducted LISN cable', 3, 4,
    1, 1, 2, 'dBµV', -30, 10, 1, 0.15, 30, 1, 0, 6, 1, 1, 0);

CREATE TABLE settings (name VARCHAR(255) COLLATE NOCASE, centerfreq FLOAT4, reflevel FLOAT4, attenuator FLOAT4,
    bandwith SMALLINT, videofilter TINYINT, span SMALLINT, unit VARCHAR(20) COLLATE NOCASE, correctionon TINYINT,
    configname VARCHAR(255) COLLATE NOCASE, readmode TINYINT, viewsample TINYINT, viewaverage TINYINT, viewmaxhold TINYINT,
    viewb TINYINT, viewab TINYINT, viewlimitmax TINYINT, viewlimitave TINYINT, averagename INTEGER, maxholdname INTEGER,
    tgon TINYINT, tglevel FLOAT4, calc TINYINT);
-- averagename holds the number of the max hold limit, maxholdname that of the average limit.
INSERT INTO settings VALUES ('Overview 0-1000 MHz', 500, -30, 10, 400, 0, 1000, 'dBmW                ', 0, 'Not set',
    0, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, -50, 0);
INSERT INTO settings VALUES ('Radiated 30-230 MHz, CISPR 32 B 3 m', 130, -30, 10, 120, 0, 200, 'dBµV/m              ', 1,
    'Radiated 3 m bilog, cable, preamplifier', 0, 1, 0, 1, 0, 0, 1, 0, 8, 0, 0, -50, 1);

COMMIT;
