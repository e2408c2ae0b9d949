-- Harbour operations schema for MySQL 8
-- Load with: mysql harbour < harbour_mysql.sql

SET NAMES utf8mb4;
SET FOREIGN_KEY_CHECKS = 0;

DROP TABLE IF EXISTS `regions`;
CREATE TABLE `regions` (
  `region_id` int unsigned NOT NULL AUTO_INCREMENT,
  `name` varchar(60) NOT NULL,
  `created_at` timestamp NOT NULL DEFAULT CURRENT_TIMESTAMP,
  PRIMARY KEY (`region_id`)
) ENGINE=InnoDB AUTO_INCREMENT=4 DEFAULT CHARSET=utf8mb4 COLLATE=utf8mb4_0900_ai_ci;

CREATE TABLE `ports` (
  `port_id` int unsigned NOT NULL AUTO_INCREMENT,
  `region_id` int unsigned NOT NULL,
  `unlocode` char(5) NOT NULL,
  `name` varchar(80) NOT NULL,
  `max_draught` decimal(5,2) DEFAULT NULL,
  `is_active` tinyint(1) NOT NULL DEFAULT '1',
  PRIMARY KEY (`port_id`),
  UNIQUE KEY `ux_ports_unlocode` (`unlocode`),
  KEY `ix_ports_region` (`region_id`),
  CONSTRAINT `fk_ports_regions` FOREIGN KEY (`region_id`) REFERENCES `regions` (`region_id`)
) ENGINE=InnoDB DEFAULT CHARSET=utf8mb4;

CREATE TABLE `berths` (
  `berth_id` int unsigned NOT NULL AUTO_INCREMENT,
  `port_id` int unsigned NOT NULL,
  `code` varchar(10) NOT NULL,
  `length_m` decimal(7,2) NOT NULL,
  `notes` text,
  PRIMARY KEY (`berth_id`),
  KEY `ix_berths_port` (`port_id`,`code`),
  CONSTRAINT `fk_berths_ports` FOREIGN KEY (`port_id`) REFERENCES `ports` (`port_id`)
) ENGINE=InnoDB AUTO_INCREMENT=100 DEFAULT CHARSET=utf8mb4;

CREATE TABLE `vessel_types` (
  `vessel_type_id` smallint unsigned NOT NULL AUTO_INCREMENT,
  `description` varchar(50) NOT NULL,
  PRIMARY KEY (`vessel_type_id`)
) ENGINE=InnoDB;

CREATE TABLE `owners` (
  `owner_id` int unsigned NOT NULL AUTO_INCREMENT,
  `name` varchar(120) NOT NULL,
  `country` char(2) NOT NULL,
  `email` varchar(254) DEFAULT NULL,
  `credit_limit` decimal(12,2) NOT NULL DEFAULT '0.00',
  `segment` enum('small','medium','large') NOT NULL DEFAULT 'small',
  PRIMARY KEY (`owner_id`)
) ENGINE=InnoDB;

CREATE TABLE `vessels` (
  `vessel_id` int unsigned NOT NULL AUTO_INCREMENT,
  `imo_number` char(7) NOT NULL,
  `name` varchar(100) NOT NULL,
  `vessel_type_id` smallint unsigned NOT NULL,
  `owner_id` int unsigned NOT NULL,
  `gross_tonnage` int unsigned DEFAULT NULL,
  `built_year` year DEFAULT NULL,
  `flags` set('ice','hazmat','reefer') DEFAULT NULL,
  `modified_at` datetime NOT NULL DEFAULT CURRENT_TIMESTAMP ON UPDATE CURRENT_TIMESTAMP,
  PRIMARY KEY (`vessel_id`),
  UNIQUE KEY `ux_vessels_imo` (`imo_number`),
  KEY `ix_vessels_owner` (`owner_id`),
  KEY `fk_vessels_types` (`vessel_type_id`),
  CONSTRAINT `fk_vessels_owners` FOREIGN KEY (`owner_id`) REFERENCES `owners` (`owner_id`) ON DELETE CASCADE,
  CONSTRAINT `fk_vessels_types` FOREIGN KEY (`vessel_type_id`) REFERENCES `vessel_types` (`vessel_type_id`)
) ENGINE=InnoDB DEFAULT CHARSET=utf8mb4;

CREATE TABLE `crew_members` (
  `crew_id` int unsigned NOT NULL AUTO_INCREMENT,
  `vessel_id` int unsigned DEFAULT NULL,
  `full name` varchar(100) NOT NULL,
  `rank` varchar(30) NOT NULL DEFAULT 'Deckhand',
  `birth_date` date DEFAULT NULL,
  `on_board` tinyint(1) NOT NULL DEFAULT '0',
  PRIMARY KEY (`crew_id`),
  KEY `ix_crew_vessel` (`vessel_id`),
  CONSTRAINT `fk_crew_vessels` FOREIGN KEY (`vessel_id`) REFERENCES `vessels` (`vessel_id`)
) ENGINE=InnoDB;

CREATE TABLE `voyages` (
  `voyage_id` bigint unsigned NOT NULL AUTO_INCREMENT,
  `vessel_id` int unsigned NOT NULL,
  `from_port_id` int unsigned NOT NULL,
  `to_port_id` int unsigned NOT NULL,
  `departed_at` datetime DEFAULT NULL,
  `arrived_at` datetime DEFAULT NULL,
  `status` enum('PLANNED','SAILING','ARRIVED','CANCELLED') NOT NULL DEFAULT 'PLANNED',
  PRIMARY KEY (`voyage_id`),
  KEY `ix_voyages_vessel_departed` (`vessel_id`,`departed_at`),
  CONSTRAINT `fk_voyages_vessel` FOREIGN KEY (`vessel_id`) REFERENCES `vessels` (`vessel_id`),
  CONSTRAINT `fk_voyages_from` FOREIGN KEY (`from_port_id`) REFERENCES `ports` (`port_id`),
  CONSTRAINT `fk_voyages_to` FOREIGN KEY (`to_port_id`) REFERENCES `ports` (`port_id`)
) ENGINE=InnoDB;

CREATE TABLE `port_calls` (
  `port_call_id` int unsigned NOT NULL AUTO_INCREMENT,
  `voyage_id` bigint unsigned NOT NULL,
  `berth_id` int unsigned NOT NULL,
  `eta_at` datetime NOT NULL,
  `ata_at` datetime DEFAULT NULL,
  PRIMARY KEY (`port_call_id`),
  CONSTRAINT `fk_port_calls_voyage` FOREIGN KEY (`voyage_id`) REFERENCES `voyages` (`voyage_id`),
  CONSTRAINT `fk_port_calls_berth` FOREIGN KEY (`berth_id`) REFERENCES `berths` (`berth_id`)
) ENGINE=InnoDB;

CREATE TABLE `cargo_kinds` (
  `cargo_kind_id` tinyint unsigned NOT NULL,
  `name` varchar(40) NOT NULL,
  `hazardous` tinyint(1) NOT NULL DEFAULT 0,
  PRIMARY KEY (`cargo_kind_id`)
) ENGINE=InnoDB;

CREATE TABLE `manifests` (
  `manifest_id` int unsigned NOT NULL AUTO_INCREMENT,
  `voyage_id` bigint unsigned NOT NULL,
  `issued_on` date NOT NULL,
  PRIMARY KEY (`manifest_id`),
  CONSTRAINT `fk_manifests_voyage` FOREIGN KEY (`voyage_id`) REFERENCES `voyages` (`voyage_id`)
) ENGINE=InnoDB;

CREATE TABLE `manifest_lines` (
  `manifest_id` int unsigned NOT NULL,
  `line_no` smallint unsigned NOT NULL,
  `cargo_kind_id` tinyint unsigned NOT NULL,
  `weight_kg` decimal(12,3) NOT NULL,
  `description` varchar(200) DEFAULT NULL,
  PRIMARY KEY (`manifest_id`,`line_no`),
  CONSTRAINT `fk_manifest_lines_manifest` FOREIGN KEY (`manifest_id`) REFERENCES `manifests` (`manifest_id`),
  CONSTRAINT `fk_manifest_lines_kind` FOREIGN KEY (`cargo_kind_id`) REFERENCES `cargo_kinds` (`cargo_kind_id`)
) ENGINE=InnoDB;

CREATE TABLE `invoices` (
  `invoice_id` int unsigned NOT NULL AUTO_INCREMENT,
  `owner_id` int unsigned NOT NULL,
  `port_call_id` int unsigned DEFAULT NULL,
  `issued_at` datetime NOT NULL DEFAULT CURRENT_TIMESTAMP,
  `due_on` date NOT NULL,
  `total` decimal(14,2) NOT NULL DEFAULT '0.00',
  `paid` tinyint(1) NOT NULL DEFAULT '0',
  PRIMARY KEY (`invoice_id`),
  KEY `ix_invoices_owner_due` (`owner_id`,`due_on`),
  CONSTRAINT `fk_invoices_owner` FOREIGN KEY (`owner_id`) REFERENCES `owners` (`owner_id`),
  CONSTRAINT `fk_invoices_port_call` FOREIGN KEY (`port_call_id`) REFERENCES `port_calls` (`port_call_id`)
) ENGINE=InnoDB AUTO_INCREMENT=1000;

CREATE TABLE `invoice_lines` (
  `invoice_line_id` int unsigned NOT NULL AUTO_INCREMENT,
  `invoice_id` int unsigned NOT NULL,
  `item` varchar(100) NOT NULL,
  `quantity` decimal(10,2) NOT NULL DEFAULT '1.00',
  `unit_price` decimal(12,2) NOT NULL,
  PRIMARY KEY (`invoice_line_id`),
  CONSTRAINT `fk_invoice_lines_invoice` FOREIGN KEY (`invoice_id`) REFERENCES `invoices` (`invoice_id`) ON DELETE CASCADE
) ENGINE=InnoDB;

CREATE TABLE `payments` (
  `payment_id` int unsigned NOT NULL AUTO_INCREMENT,
  `invoice_id` int unsigned NOT NULL,
  `amount` decimal(14,2) NOT NULL,
  `paid_at` datetime NOT NULL DEFAULT CURRENT_TIMESTAMP,
  `reference` varchar(40) DEFAULT NULL,
  PRIMARY KEY (`payment_id`),
  CONSTRAINT `fk_payments_invoice` FOREIGN KEY (`invoice_id`) REFERENCES `invoices` (`invoice_id`)
) ENGINE=InnoDB;

CREATE TABLE `audit_log` (
  `audit_id` bigint unsigned NOT NULL AUTO_INCREMENT,
  `table_name` varchar(64) NOT NULL,
  `action` char(1) NOT NULL,
  `key_value` varchar(50) DEFAULT NULL,
  `changed_at` timestamp(6) NOT NULL DEFAULT CURRENT_TIMESTAMP(6),
  PRIMARY KEY (`audit_id`)
) ENGINE=MyISAM DEFAULT CHARSET=latin1;

CREATE INDEX ix_audit_table ON audit_log (table_name, changed_at);

SET FOREIGN_KEY_CHECKS = 1;

CREATE OR REPLACE VIEW `v_active_vessels` AS
SELECT v.vessel_id, v.name, t.description AS vessel_type, o.name AS owner_name
FROM vessels v
JOIN vessel_types t ON t.vessel_type_id = v.vessel_type_id
JOIN owners o ON o.owner_id = v.owner_id
WHERE EXISTS (SELECT 1 FROM voyages y WHERE y.vessel_id = v.vessel_id AND y.status = 'SAILING');

CREATE VIEW v_port_traffic AS
SELECT p.unlocode, COUNT(*) AS calls, MAX(pc.ata_at) AS last_arrival
FROM port_calls pc
JOIN berths b ON b.berth_id = pc.berth_id
JOIN ports p ON p.port_id = b.port_id
GROUP BY p.unlocode;

CREATE VIEW v_open_invoices AS
SELECT i.invoice_id, o.name, i.total,
       IFNULL((SELECT SUM(amount) FROM payments pm WHERE pm.invoice_id = i.invoice_id), 0) AS paid_so_far,
       DATEDIFF(NOW(), i.due_on) AS days_overdue
FROM invoices i JOIN owners o ON o.owner_id = i.owner_id
WHERE i.paid = 0;

CREATE VIEW v_crew_roster AS
SELECT c.`full name` AS crew_name, c.`rank`, v.name AS vessel_name,
       IF(c.on_board = 1, 'aboard', 'ashore') AS whereabouts
FROM crew_members c LEFT JOIN vessels v ON v.vessel_id = c.vessel_id;

CREATE VIEW v_cargo_totals AS
SELECT m.voyage_id, k.name AS cargo_kind, SUM(l.weight_kg) / 1000.0 AS tonnes
FROM manifest_lines l
JOIN manifests m ON m.manifest_id = l.manifest_id
JOIN cargo_kinds k ON k.cargo_kind_id = l.cargo_kind_id
GROUP BY m.voyage_id, k.name;

DELIMITER $$
CREATE PROCEDURE close_voyage(IN p_voyage_id BIGINT UNSIGNED, IN p_arrived_at DATETIME)
BEGIN
  DECLARE v_vessel INT UNSIGNED;
  IF p_arrived_at IS NULL THEN
    SET p_arrived_at = NOW();
  END IF;
  UPDATE voyages SET arrived_at = p_arrived_at, status = 'ARRIVED'
   WHERE voyage_id = p_voyage_id AND status = 'SAILING';
  SELECT vessel_id INTO v_vessel FROM voyages WHERE voyage_id = p_voyage_id;
  UPDATE crew_members SET on_board = 0 WHERE vessel_id = v_vessel;
END$$

CREATE PROCEDURE record_payment(IN p_invoice INT UNSIGNED, IN p_amount DECIMAL(14,2), IN p_ref VARCHAR(40))
proc: BEGIN
  IF p_amount <= 0 THEN
    LEAVE proc;
  END IF;
  START TRANSACTION;
  INSERT INTO payments (invoice_id, amount, reference) VALUES (p_invoice, p_amount, p_ref);
  UPDATE invoices SET paid = 1
   WHERE invoice_id = p_invoice
     AND total <= (SELECT SUM(amount) FROM payments WHERE invoice_id = p_invoice);
  COMMIT;
END$$

CREATE TRIGGER trg_payments_audit AFTER INSERT ON payments
FOR EACH ROW
BEGIN
  INSERT INTO audit_log (table_name, action, key_value) VALUES ('payments', 'I', NEW.payment_id);
END$$
DELIMITER ;

INSERT INTO `regions` (`name`) VALUES ('North Sea'),('Baltic'),('Mediterranean');
INSERT INTO `vessel_types` (`description`) VALUES ('Container'),('Bulk carrier'),('Tanker');
INSERT INTO `cargo_kinds` VALUES (1,'Grain',0),(2,'Crude oil',1);
